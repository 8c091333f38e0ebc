// The guard itself: every kind of call must be counted while a thread is marked, and none otherwise.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pthread.h>
#include <semaphore.h>
#include <sys/mman.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <iostream>
#include <memory>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <thread>
#include <vector>

#include "support/rt_guard.h"

using brindlehum::test::RealTimeScope;
using brindlehum::test::RtFaults;

namespace {

struct Crime {
    const char* name;
    uint32_t RtFaults::*kind;
    std::function<void()> commit;
};

volatile size_t some = 100;  // sizes that the compiler can't reason away
void* volatile kept = nullptr;

void keep(void* memory) {
    kept = memory;
    free(kept);
}

std::vector<Crime> allocations() {
    const auto kind = &RtFaults::allocations;
    return {
        {"malloc", kind, [] { keep(malloc(some)); }},
        {"calloc", kind, [] { keep(calloc(some, 2)); }},
        {"realloc", kind, [] { keep(realloc(nullptr, some)); }},
        {"aligned_alloc", kind, [] { keep(aligned_alloc(64, 128)); }},
        {"posix_memalign", kind,
         [] {
             void* memory = nullptr;
             if (posix_memalign(&memory, 64, some) == 0) { keep(memory); }
         }},
        {"operator new", kind, [] { kept = std::make_unique<std::vector<int>>(some).get(); }},
        {"aligned operator new", kind,
         [] { ::operator delete[](::operator new[](some, std::align_val_t{64}), std::align_val_t{64}); }},
        {"string", kind, [] { kept = std::string(some, 'x').data(); }},
        {"function", kind,
         [] {
             const std::function<size_t()> large = [a = some, b = some, c = some, d = some] { return a + b + c + d; };
             some = std::max<size_t>(100, large());
         }},
        {"throw", kind,
         [] {
             try {
                 throw 1;
             } catch (int) {}
         }},
    };
}

std::vector<Crime> locks() {
    const auto kind = &RtFaults::locks;
    static std::mutex mutex;
    static std::timed_mutex timed;
    static std::shared_mutex shared;
    static std::condition_variable condition;
    static sem_t semaphore;
    sem_init(&semaphore, 0, 100);
    return {
        {"mutex", kind, [] { const std::lock_guard lock(mutex); }},
        {"try_lock", kind,
         [] {
             if (mutex.try_lock()) { mutex.unlock(); }
         }},
        {"timed mutex", kind, [] { const std::unique_lock lock(timed, std::chrono::milliseconds(1)); }},
        {"reader lock", kind, [] { const std::shared_lock lock(shared); }},
        {"writer lock", kind, [] { const std::unique_lock lock(shared); }},
        {"condition wait", kind,
         [] {
             std::unique_lock lock(mutex);
             condition.wait_for(lock, std::chrono::nanoseconds(1));
         }},
        {"notify", kind, [] { condition.notify_one(); }},
        {"semaphore", kind, [] { sem_wait(&semaphore); }},
    };
}

std::vector<Crime> systemCalls() {
    const auto kind = &RtFaults::systemCalls;
    static int pipes[2];
    static int sockets[2];
    EXPECT_EQ(pipe(pipes), 0);
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, sockets), 0);
    static char byte = 'x';
    static FILE* sink = fopen("/dev/null", "w");
    return {
        {"write", kind, [] { EXPECT_EQ(write(pipes[1], &byte, 1), 1); }},
        {"read", kind, [] { EXPECT_EQ(read(pipes[0], &byte, 1), 1); }},
        {"open and close", kind, [] { close(open("/dev/null", O_RDONLY)); }},
        {"openat", kind, [] { close(openat(AT_FDCWD, "/dev/null", O_RDONLY)); }},
        {"fsync", kind, [] { fsync(pipes[0]); }},
        {"poll", kind, [] { poll(nullptr, 0, 0); }},
        {"select", kind,
         [] {
             timeval none{};
             select(0, nullptr, nullptr, nullptr, &none);
         }},
        {"send", kind, [] { EXPECT_EQ(send(sockets[0], &byte, 1, 0), 1); }},
        {"recv", kind, [] { EXPECT_EQ(recv(sockets[1], &byte, 1, 0), 1); }},
        {"nanosleep", kind,
         [] {
             const timespec tiny{0, 1};
             nanosleep(&tiny, nullptr);
         }},
        {"sleep_for", kind, [] { std::this_thread::sleep_for(std::chrono::nanoseconds(1)); }},
        {"usleep", kind, [] { usleep(1); }},
        {"yield", kind, [] { std::this_thread::yield(); }},
        {"syscall", kind, [] { syscall(SYS_getpid); }},
        {"mmap", kind, [] { munmap(mmap(nullptr, 4096, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0), 4096); }},
        {"fprintf", kind, [] { fprintf(sink, "%d", int(some)); }},
        {"fwrite", kind, [] { fwrite(&byte, 1, 1, sink); }},
        {"printf", kind, [] { printf("%zu\n", size_t(some)); }},
        {"cerr", kind, [] { std::cerr << " " << std::flush; }},
    };
}

}  // namespace

TEST(RtGuard, BitesOnEveryKindOfCall) {
    for (const auto& crimes : {allocations(), locks(), systemCalls()}) {
        for (const Crime& crime : crimes) {
            SCOPED_TRACE(crime.name);
            RtFaults faults;
            {
                const RealTimeScope scope;
                crime.commit();
                faults = scope.faults();
            }
            EXPECT_GE(faults.*crime.kind, 1U);
            EXPECT_NE(faults.first, nullptr);
        }
    }
}

TEST(RtGuard, LeavesUnmarkedThreadsAndPlainWorkAlone) {
    allocations()[0].commit();
    RtFaults faults;
    {
        const RealTimeScope scope;
        for (size_t i = 0; i < 100; ++i) { some = some + 1; }
        faults = scope.faults();
    }
    EXPECT_EQ(faults.total(), 0U);
    // The mark is the thread's own: another may do as it likes meanwhile.
    std::atomic<int> stage{0};
    std::thread other([&] {
        while (stage < 1) {}
        locks()[0].commit();
        allocations()[0].commit();
        stage = 2;
    });
    {
        const RealTimeScope scope;
        stage = 1;
        while (stage < 2) {}
        faults = scope.faults();
    }
    other.join();
    EXPECT_EQ(faults.total(), 0U);
}
