// Progress, Cancel and Show in Folder.
#include "ui/player/export_bar.h"

#include <QHBoxLayout>
#include <QProgressBar>
#include <QPushButton>
#include <cmath>

#include "mix/player/export_progress.h"
#include "ui/look/elided_label.h"

namespace brindlehum {

ExportBar::ExportBar(ExportProgress& progress, PlayerMessage& message, Reveal reveal, QWidget* parent)
    : QWidget(parent), exports_(progress), message_(message) {
    setObjectName("exports");
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    row->addWidget(caption_ = new ElidedLabel(Qt::ElideMiddle), 1);
    bar_ = new QProgressBar;
    bar_->setRange(0, 1000);
    bar_->setTextVisible(false);
    bar_->setFixedWidth(160);
    bar_->setAccessibleName(tr("Progress of the export"));
    row->addWidget(bar_);
    row->addWidget(cancel_ = new QPushButton(tr("Cancel")));
    cancel_->setAccessibleName(tr("Cancel the export"));
    row->addWidget(show_ = new QPushButton(tr("Show in Folder")));
    connect(cancel_, &QPushButton::clicked, &progress, &ExportProgress::cancel);
    connect(show_, &QPushButton::clicked, this, [this, reveal = std::move(reveal)] { reveal(exports_.files()); });
    connect(&progress, &ExportProgress::changed, this, &ExportBar::refresh);
    connect(&message, &PlayerMessage::changed, this, &ExportBar::refresh);
    refresh();
}

void ExportBar::refresh() {
    const auto progress = exports_.progress();
    for (QWidget* widget :
         {static_cast<QWidget*>(caption_), static_cast<QWidget*>(bar_), static_cast<QWidget*>(cancel_)}) {
        widget->setVisible(progress.has_value());
    }
    // A message that came meanwhile is worth more where the room is short.
    caption_->setVisible(progress && !message_.text());
    if (progress) {
        caption_->setFullText(QString::fromStdString(exports_.caption()));
        bar_->setValue(int(std::lround(*progress * bar_->maximum())));
    }
    const bool told = !progress && !exports_.closing().empty() && message_.text() == exports_.closing();
    show_->setVisible(told && !exports_.files().empty());
    setVisible(progress || told);
}

}  // namespace brindlehum
