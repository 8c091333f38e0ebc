// MonitorMeter: the levels of the bus and of the room's speakers, and how the stream does, for the eye.
#pragma once

#include <QObject>
#include <string>
#include <vector>

#include "mix/player/meter_level.h"
#include "monitor/engine/monitor_engine.h"

namespace brindlehum {

// Main thread. Takes the peaks 30 times a second while it is shown and the monitor runs, and on until the levels have
// fallen. What went over while it was hidden is counted when it is shown again.
class MonitorMeter : public QObject {
    Q_OBJECT
public:
    struct Channel {
        SpeakerID speaker = SpeakerID::L;
        std::string label;
        MeterLevel level;
        double highest = MeterLevel::floor;  // dBFS, since it was cleared
        int overs = 0;                       // takes that held a sample beyond full scale, since it was cleared
        bool operator==(const Channel&) const = default;
    };
    struct Figures {
        double latency = 0;  // as in MonitorEngine
        uint64_t dropouts = 0;
        bool operator==(const Figures&) const = default;
    };

    MonitorMeter(MonitorEngine& monitor, MainLoop& loop);

    const std::vector<Channel>& bus() const { return bus_; }
    const std::vector<Channel>& speakers() const { return speakers_; }
    const Figures& figures() const { return figures_; }
    void show(bool shown);
    // Clears the overs and the highest levels.
    void clearOver();

Q_SIGNALS:
    void changed();  // what is seen

private:
    void refresh();
    void tick();
    void takeWhatWasHidden();

    MonitorEngine& monitor_;
    MainLoop& loop_;
    std::vector<Channel> bus_, speakers_;
    Figures figures_;
    bool shown_ = false;
    double last_ = 0;  // seconds, of the last tick
    TimerHandle timer_;
};

}  // namespace brindlehum
