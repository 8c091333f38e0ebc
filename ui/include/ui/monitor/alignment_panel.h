// AlignmentPanel: polarity and delay of each speaker of the room.
#pragma once

#include <QWidget>
#include <vector>

#include "monitor/engine/monitor_engine.h"

class QCheckBox;
class QGridLayout;
class QLabel;

namespace brindlehum {

class NumberField;

// A window of its own beside the monitor's.
class AlignmentPanel : public QWidget {
    Q_OBJECT
public:
    explicit AlignmentPanel(MonitorEngine& monitor, QWidget* parent = nullptr);
    void bringUp();

private:
    struct Row {
        SpeakerID speaker;
        NumberField* delay;
        QCheckBox* inverted;
    };
    void refresh();
    void rebuild(const SpeakerList& list);
    void addRow(SpeakerID speaker, const SpeakerList& list, int at);

    MonitorEngine& monitor_;
    SpeakerList shown_;
    std::vector<Row> rows_;
    QWidget* table_ = nullptr;
    QLabel* none_;
};

}  // namespace brindlehum
