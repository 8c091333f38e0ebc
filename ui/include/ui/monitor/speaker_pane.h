// SpeakerPane: the map of the speakers, and in its corners what concerns them all.
#pragma once

#include <QWidget>

#include "monitor/engine/monitor_engine.h"
#include "monitor/engine/monitor_meter.h"

class QPushButton;

namespace brindlehum {

class AlignmentPanel;

class SpeakerPane : public QWidget {
    Q_OBJECT
public:
    SpeakerPane(MonitorEngine& monitor, MonitorMeter& meter, QWidget* parent = nullptr);
    void refresh();

private:
    MonitorEngine& monitor_;
    QPushButton* clear_;
    QPushButton* align_;
    AlignmentPanel* alignment_;
};

}  // namespace brindlehum
