// MonitorMeter: the levels of the bus and of the room's speakers, for the eye.
#pragma once

#include <QObject>
#include <string>
#include <vector>

#include "mix/player/meter_level.h"
#include "monitor/engine/monitor_engine.h"

namespace brindlehum {

// Main thread. Takes the peaks 30 times a second while it is shown.
class MonitorMeter : public QObject {
    Q_OBJECT
public:
    struct Channel {
        SpeakerID speaker = SpeakerID::L;
        std::string label;
        MeterLevel level;
    };

    MonitorMeter(MonitorEngine& monitor, MainLoop& loop);

    const std::vector<Channel>& bus() const { return bus_; }
    const std::vector<Channel>& speakers() const { return speakers_; }
    void show(bool shown);
    // Clears the marks of over-range.
    void clearOver();

Q_SIGNALS:
    void changed();

private:
    void refresh();
    void tick();

    MonitorEngine& monitor_;
    MainLoop& loop_;
    std::vector<Channel> bus_, speakers_;
    double last_ = 0;  // seconds, of the last tick
    TimerHandle timer_;
};

}  // namespace brindlehum
