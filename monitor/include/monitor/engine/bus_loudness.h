// BusLoudness: how loud the bus is, measured on a thread of its own while the monitor runs.
#pragma once

#include <QObject>
#include <memory>
#include <vector>

#include "analysis/loudness/live_loudness.h"
#include "core/mn_ring.h"
#include "platform/background.h"
#include "platform/main_loop.h"

namespace brindlehum {

// Main thread. The integrated value goes on over stops and changes of the source, until it is reset.
class BusLoudness : public QObject {
    Q_OBJECT
public:
    explicit BusLoudness(MainLoop& loop);
    ~BusLoudness() override;

    // Reads this ring from now on; `sampleRate` in Hz.
    void open(std::shared_ptr<mn_ring> ring, double sampleRate);
    // Which of the ring's channels are the bus: those from `offset` on, in this order.
    void setBus(const SpeakerList& speakers, int offset);
    void close();
    // Begins the integrated value anew.
    void reset();
    const LiveLoudness::Reading& reading() const { return reading_; }

Q_SIGNALS:
    void changed();

private:
    struct Bus {
        double sampleRate = 0;
        SpeakerList speakers;
        int offset = 0;
        bool operator==(const Bus&) const = default;
    };
    void measure();
    void drain(mn_ring* ring, const Bus& bus);

    MainLoop& loop_;
    std::shared_ptr<mn_ring> ring_;
    Bus bus_;
    LiveLoudness::Reading reading_;
    TimerHandle timer_;
    // On the queue alone:
    LiveLoudness live_;
    Bus opened_;
    std::vector<std::vector<float>> planes_;
    std::vector<float> silence_;

    Background background_;
};

}  // namespace brindlehum
