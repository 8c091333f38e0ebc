// The real-time guard: counts the forbidden calls of a thread while it is marked real-time.
//
// Linked into a program, it stands before the C library's allocation, locks and blocking calls. It isn't part of the
// product and can't live beside a sanitizer, which stands in the same place.
#pragma once

#include <cstdint>

namespace brindlehum::test {

struct RtFaults {
    uint32_t allocations = 0;  // malloc family, frees included
    uint32_t locks = 0;        // mutexes, conditions, read-write locks, semaphores
    uint32_t systemCalls = 0;  // calls that may block or enter the kernel: files, sockets, sleeps, output, memory maps
    const char* first = nullptr;  // name of the first function that was called
    uint32_t total() const { return allocations + locks + systemCalls; }
};

// Marks the calling thread as real-time for its lifetime; scopes don't nest.
class RealTimeScope {
public:
    RealTimeScope() noexcept;
    ~RealTimeScope();
    RealTimeScope(const RealTimeScope&) = delete;
    RealTimeScope& operator=(const RealTimeScope&) = delete;
    // Of this thread since the scope began.
    const RtFaults& faults() const noexcept;
};

}  // namespace brindlehum::test
