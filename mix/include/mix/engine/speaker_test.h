// SpeakerTest: noise and numbered beeps on one output of a device, by which a user knows which speaker it is.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "mix/engine/engine_seat.h"

namespace brindlehum {

// A second of pink noise, then `beeps` beeps: mono, at `rate` Hz, with peaks below -8 dBFS. `low` beeps at 60 Hz
// instead of 1 kHz, for a subwoofer. Any thread.
std::vector<float> speakerIdent(double rate, int beeps, bool low);

// Main thread. Takes the engine's seat while it sounds, and leaves it afterwards.
class SpeakerTest {
public:
    SpeakerTest(PlaybackEngine& engine, MainLoop& loop);

    struct Speaker {
        int channel = 0;  // of the device, from 0; the ident is silent where the device has none
        int number = 1;   // beeps
        bool low = false;
        double trimDb = 0;
    };
    // Throws Error (device).
    void play(const std::optional<std::string>& deviceUID, const Speaker& speaker);
    void stop();
    bool isPlaying() const { return seat_.isTaken(); }

private:
    MainLoop& loop_;
    EngineSeat seat_;
    TimerHandle end_;
};

}  // namespace brindlehum
