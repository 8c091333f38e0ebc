// Meter: the time of short stretches of work, and the best of many, which other load on the machine changes least.
#pragma once

#include <algorithm>
#include <chrono>
#include <limits>

namespace brindlehum::bench {

// Runs `work` `times` times in one stretch; returns the seconds of one run.
template <class Work>
double secondsOf(int times, Work work) {
    const auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < times; ++i) { work(); }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count() / times;
}

struct Best {
    double seconds = std::numeric_limits<double>::infinity();
    void add(double measured) { seconds = std::min(seconds, measured); }
};

// The fastest of `stretches` such stretches.
template <class Work>
double bestSecondsOf(int stretches, int times, Work work) {
    Best best;
    for (int i = 0; i < stretches; ++i) { best.add(secondsOf(times, work)); }
    return best.seconds;
}

}  // namespace brindlehum::bench
