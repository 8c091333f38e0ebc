// FlushDenormals: during its lifetime the thread's float arithmetic treats values below 2^-126 as 0.
#pragma once

#include <cstdint>

#if defined(__SSE__)
#include <xmmintrin.h>
#endif

namespace brindlehum {

// Denormal operands cost some processors over 100 cycles each, so a file that fades into them would make a block late.
// They lie below -758 dBFS, so flushing them changes nothing that a converter can play.
class FlushDenormals {
public:
    FlushDenormals() noexcept : saved_(control()) { setControl(saved_ | flushBits); }
    ~FlushDenormals() { setControl(saved_); }
    FlushDenormals(const FlushDenormals&) = delete;
    FlushDenormals& operator=(const FlushDenormals&) = delete;

private:
#if defined(__SSE__)
    using Control = uint32_t;
    static constexpr Control flushBits = 0x8040;  // results (FTZ) and operands (DAZ)
    static Control control() noexcept {
        return _mm_getcsr();
    }
    static void setControl(Control value) noexcept {
        _mm_setcsr(value);
    }
#elif defined(__aarch64__)
    using Control = uint64_t;
    static constexpr Control flushBits = 1U << 24;  // FZ
    static Control control() noexcept {
        Control value;
        asm volatile("mrs %0, fpcr" : "=r"(value));
        return value;
    }
    static void setControl(Control value) noexcept {
        asm volatile("msr fpcr, %0" ::"r"(value));
    }
#else
    using Control = uint32_t;
    static constexpr Control flushBits = 0;
    static Control control() noexcept {
        return 0;
    }
    static void setControl(Control) noexcept {}
#endif
    Control saved_;
};

}  // namespace brindlehum
