// The player's top line: builds it and keeps it in step with the player.
#include "ui/player/player_header.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <algorithm>

#include "base/time_text.h"
#include "mix/player/loaded_sound.h"
#include "mix/player/transport.h"
#include "ui/look/elided_label.h"
#include "ui/look/icons.h"
#include "ui/look/path_text.h"
#include "ui/look/tabular_font.h"
#include "ui/player/time_label.h"

namespace brindlehum {
namespace {

constexpr int headerHeight = 26;  // logical pixels

}  // namespace

PlayerHeader::PlayerHeader(LoadedSound& sound, Transport& transport, QWidget* parent)
    : QWidget(parent), sound_(sound), transport_(transport) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(16);
    // A fixed height, so that the selection's button doesn't move the waveform.
    setFixedHeight(headerHeight);
    row->addWidget(title_ = new ElidedLabel(Qt::ElideMiddle), 3);
    title_->setProperty("role", "title");
    row->addWidget(summary_ = new ElidedLabel(Qt::ElideRight), 1);
    summary_->setProperty("role", "secondary");
    summary_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    row->addWidget(selectionBox_ = makeSelection());
    row->addWidget(time_ = new TimeLabel);
    refresh();
}

QWidget* PlayerHeader::makeSelection() {
    auto* box = new QWidget;
    auto* row = new QHBoxLayout(box);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(2);
    row->addWidget(selection_ = new QLabel);
    selection_->setFont(tabularFont(10));
    auto* clear = new QToolButton;
    setSymbol(*clear, "clear");
    clear->setIconSize({12, 12});
    clear->setProperty("role", "chip");
    clear->setToolTip(tr("Clear selection"));
    clear->setAccessibleName(tr("Clear selection"));
    clear->setFocusPolicy(Qt::StrongFocus);
    connect(clear, &QToolButton::clicked, this, [this] { transport_.clearSelection(); });
    row->addWidget(clear);
    return box;
}

void PlayerHeader::refresh() {
    const auto& info = sound_.info();
    title_->setFullText(info ? pathText(info->url.filename()) : QString());
    summary_->setFullText(info ? QString::fromStdString(info->summary()) : QString());
    const auto& selection = transport_.selection();
    selectionBox_->setVisible(selection.has_value());
    if (selection && info) {
        selection_->setText(tr("Sel %1").arg(
            QString::fromStdString(timeText(double(selection->length()) / std::max(info->sampleRate, 1.0)))));
    }
    refreshTime();
}

void PlayerHeader::refreshTime() {
    const auto& info = sound_.info();
    time_->setTime(transport_.playhead().frame(), info ? info->frames : 0, info ? info->sampleRate : 1);
}

}  // namespace brindlehum
