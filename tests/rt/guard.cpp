// The guard itself: every kind of call must be counted while a thread is marked, and none otherwise.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <semaphore.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iostream>
#include <mutex>
#include <shared_mutex>
#include <thread>
#include <vector>

#include "support/rt_guard.h"

using brindlehum::test::RealTimeScope;
using brindlehum::test::RtFaults;

namespace {

volatile size_t some = 100;  // a size that the compiler can't reason away
void* volatile kept = nullptr;

void keep(void* memory) {
    kept = memory;
    free(kept);
}

std::mutex mutex;
std::shared_mutex shared;
std::condition_variable condition;
sem_t semaphore;
int pipes[2];
char byte = 'x';
FILE* sink = nullptr;

void allocateLargeFunction() {
    const std::function<size_t()> large = [a = some, b = some, c = some, d = some] { return a + b + c + d; };
    some = std::max<size_t>(100, large());
}
void throwAndCatch() {
    try {
        throw 1;
    } catch (int) {}
}
void waitForCondition() {
    std::unique_lock lock(mutex);
    condition.wait_for(lock, std::chrono::nanoseconds(1));
}

struct Call {
    const char* name;
    uint32_t RtFaults::*kind;
    void (*make)();
};

constexpr auto allocation = &RtFaults::allocations;
constexpr auto lock = &RtFaults::locks;
constexpr auto systemCall = &RtFaults::systemCalls;
const Call calls[] = {
    {"malloc", allocation, [] { keep(malloc(some)); }},
    {"realloc", allocation, [] { keep(realloc(nullptr, some)); }},
    {"vector", allocation, [] { kept = std::vector<int>(some).data(); }},
    {"aligned new", allocation,
     [] { ::operator delete[](::operator new[](some, std::align_val_t{64}), std::align_val_t{64}); }},
    {"std::function", allocation, allocateLargeFunction},
    {"throw", allocation, throwAndCatch},
    {"mutex", lock, [] { const std::lock_guard held(mutex); }},
    {"reader lock", lock, [] { const std::shared_lock held(shared); }},
    {"condition wait", lock, waitForCondition},
    {"notify", lock, [] { condition.notify_one(); }},
    {"semaphore", lock, [] { sem_wait(&semaphore); }},
    {"write", systemCall, [] { EXPECT_EQ(write(pipes[1], &byte, 1), 1); }},
    {"read", systemCall, [] { EXPECT_EQ(read(pipes[0], &byte, 1), 1); }},
    {"open and close", systemCall, [] { close(open("/dev/null", O_RDONLY)); }},
    {"sleep_for", systemCall, [] { std::this_thread::sleep_for(std::chrono::nanoseconds(1)); }},
    {"yield", systemCall, [] { std::this_thread::yield(); }},
    {"syscall", systemCall, [] { syscall(SYS_getpid); }},
    {"mmap", systemCall, [] { munmap(mmap(nullptr, 4096, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0), 4096); }},
    {"fprintf", systemCall, [] { fprintf(sink, "%d", int(some)); }},
    {"printf", systemCall, [] { printf("%zu\n", size_t(some)); }},
    {"cerr", systemCall, [] { std::cerr << " " << std::flush; }},
};

}  // namespace

TEST(RtGuard, CountsEveryKindOfCall) {
    sem_init(&semaphore, 0, 100);
    sink = fopen("/dev/null", "w");
    ASSERT_EQ(pipe(pipes), 0);
    for (const Call& call : calls) {
        RtFaults faults;
        {
            const RealTimeScope scope;
            call.make();
            faults = scope.faults();
        }
        EXPECT_GE(faults.*call.kind, 1U) << call.name;
        EXPECT_NE(faults.first, nullptr) << call.name;
    }
}

// Plain work isn't counted, and the mark is the thread's own: another may do as it likes meanwhile.
TEST(RtGuard, LeavesPlainWorkAndUnmarkedThreadsAlone) {
    std::atomic<int> stage{0};
    std::thread other([&] {
        while (stage < 1) {}
        allocateLargeFunction();
        waitForCondition();
        stage = 2;
    });
    RtFaults faults;
    {
        const RealTimeScope scope;
        stage = 1;
        while (stage < 2) { some = some + 1; }
        faults = scope.faults();
    }
    other.join();
    EXPECT_EQ(faults.total(), 0U);
}
