// Processor time of this thread, which other load on the machine hardly changes. Everything measured runs on one
// thread.
#pragma once

#include <algorithm>
#include <ctime>
#include <limits>

namespace brindlehum::bench {

inline double cpuNow() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
}

// The least of `runs` runs, in seconds.
template <class Work>
double bestCpuSeconds(int runs, Work work) {
    double best = std::numeric_limits<double>::infinity();
    for (int i = 0; i < runs; ++i) {
        const double start = cpuNow();
        work();
        best = std::min(best, cpuNow() - start);
    }
    return best;
}

}  // namespace brindlehum::bench
