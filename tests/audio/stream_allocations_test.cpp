// A running stream takes no memory: every block after the first ones is filled from what the reader holds.
// Not under the sanitizers, which bring an operator new of their own.
#ifndef BRINDLEHUM_SANITIZED
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>

#include "audio/stream_reader.h"
#include "stream_sources.h"

namespace {
thread_local int64_t allocations = 0;
}

void* operator new(size_t size) {
    ++allocations;
    if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, size_t) noexcept {
    std::free(memory);
}

namespace brindlehum::test {
namespace {

TEST(StreamReader, TakesNoMemoryInTheSteadyState) {
    for (const double outputRate : {48000.0, 44100.0}) {
        CountingSource::Log log;
        StreamReader reader(std::make_unique<CountingSource>(8, 48000, 20000, 20000, log), outputRate, 0, 20000, true,
                            1000, 9000);
        float sink[8][4096];
        float* planes[8];
        for (int c = 0; c < 8; ++c) planes[c] = sink[c];
        const auto block = [&] {
            reader.fillOnce();
            while (mn_ring_read(reader.ring(), planes, 4096, nullptr) > 0) {
            }
        };
        const int64_t atStart = allocations;
        ::operator delete(::operator new(8));
        ASSERT_EQ(allocations, atStart + 1) << "the count must count";
        for (int i = 0; i < 50; ++i) block();
        const int64_t before = allocations;
        for (int i = 0; i < 500; ++i) block();
        EXPECT_EQ(allocations, before) << "at " << outputRate;
    }
}

}  // namespace
}  // namespace brindlehum::test
#endif
