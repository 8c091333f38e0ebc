// CycleWatch: counts the cycles of a graph in which a node of ours delivered nothing, or too late.
#pragma once

#include <cstdint>

namespace brindlehum {

// What a cycle says of itself.
struct Cycle {
    uint32_t clock = 0;     // id of the clock that drives the graph
    uint64_t position = 0;  // frames of that clock at the start of the cycle
    uint64_t duration = 0;  // frames
    uint64_t due = 0;       // nanoseconds of the steady clock, when the next one begins; 0 while unknown
};

// Render thread; never allocates, locks, logs or throws. The clock goes on when a node misses a cycle: a step in its
// position is what we weren't called for. Overruns of the device itself aren't seen here, and aren't ours.
class CycleWatch {
public:
    // A cycle that we are called for. Returns how many were lost since the last one.
    uint64_t begin(const Cycle& now) noexcept {
        const bool follows = last_.duration > 0 && now.clock == last_.clock && now.duration == last_.duration;
        const uint64_t expected = last_.position + last_.duration;
        uint64_t lost = 0;
        if (follows && now.position > expected) { lost = (now.position - expected) / last_.duration; }
        // A clock that jumps this far was stopped or set.
        if (lost > mostLost) { lost = 0; }
        if (lost == 0 && wasLate_) { lost = 1; }
        last_ = now;
        wasLate_ = false;
        return lost;
    }
    // All of ours is done, at `now` nanoseconds.
    void end(uint64_t now) noexcept { wasLate_ = last_.due > 0 && now > last_.due; }
    // Forgets the last cycle, after a pause.
    void reset() noexcept { *this = {}; }

private:
    static constexpr uint64_t mostLost = 1000;

    Cycle last_;
    bool wasLate_ = false;
};

}  // namespace brindlehum
