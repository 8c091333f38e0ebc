// The map with its buttons.
#include "ui/monitor/speaker_pane.h"

#include <QGridLayout>
#include <QPushButton>

#include "ui/monitor/alignment_panel.h"
#include "ui/monitor/speaker_map.h"

namespace brindlehum {

SpeakerPane::SpeakerPane(MonitorEngine& monitor, MonitorMeter& meter, QWidget* parent)
    : QWidget(parent), monitor_(monitor) {
    alignment_ = new AlignmentPanel(monitor, this);
    align_ = new QPushButton;
    align_->setToolTip(tr("Delay and polarity of each speaker"));
    connect(align_, &QPushButton::clicked, alignment_, &AlignmentPanel::bringUp);
    clear_ = new QPushButton(tr("Clear solos and mutes"));
    connect(clear_, &QPushButton::clicked, this, [this] {
        MonitorState next = monitor_.state();
        next.solo.clear();
        next.muted.clear();
        monitor_.setState(next);
    });
    for (QPushButton* button : {align_, clear_}) { button->setProperty("role", "small"); }
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(new SpeakerMap(monitor, meter), 0, 0, 1, 2);
    grid->addWidget(align_, 0, 0, Qt::AlignLeft | Qt::AlignBottom);
    grid->addWidget(clear_, 0, 1, Qt::AlignRight | Qt::AlignBottom);
    refresh();
}

void SpeakerPane::refresh() {
    const MonitorState& state = monitor_.state();
    align_->setText(state.alignment.empty() ? tr("Alignment…") : tr("Alignment (%1)…").arg(state.alignment.size()));
    align_->setVisible(monitor_.profile().kind == OutputProfile::Kind::speakers);
    clear_->setVisible(!state.solo.empty() || !state.muted.empty());
}

}  // namespace brindlehum
