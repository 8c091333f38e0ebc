// The interposed functions: each notes its call if the thread is marked, then goes on to the real one.
#include "support/rt_guard.h"

#include <dlfcn.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstddef>

// The C library's own names for its allocator, which spare looking it up before the loader is ready.
extern "C" {
void* __libc_malloc(size_t);
void* __libc_calloc(size_t, size_t);
void* __libc_realloc(void*, size_t);
void __libc_free(void*);
void* __libc_memalign(size_t, size_t);
}

namespace brindlehum::test {
namespace {

constinit thread_local bool marked = false;
constinit thread_local RtFaults counted;

enum class Kind { allocation, lock, systemCall };

void note(Kind kind, const char* name) noexcept {
    if (!marked) { return; }
    if (counted.first == nullptr) { counted.first = name; }
    uint32_t& count = kind == Kind::allocation ? counted.allocations
                      : kind == Kind::lock     ? counted.locks
                                               : counted.systemCalls;
    ++count;
}

// The library's function of this name, looked up on first use. Calls that the look-up itself makes aren't counted.
template <class F>
struct Next {
    const char* name;
    const char* version;  // where the library keeps an older one under the same name, else null
    std::atomic<F*> function{nullptr};

    F* get() noexcept {
        F* found = function.load(std::memory_order_acquire);
        if (found != nullptr) { return found; }
        const bool wasMarked = marked;
        marked = false;
        void* symbol = version != nullptr ? dlvsym(RTLD_NEXT, name, version) : nullptr;
        if (symbol == nullptr) { symbol = dlsym(RTLD_NEXT, name); }
        marked = wasMarked;
        found = reinterpret_cast<F*>(symbol);
        function.store(found, std::memory_order_release);
        return found;
    }
};

}  // namespace

RealTimeScope::RealTimeScope() noexcept {
    counted = {};
    marked = true;
}
RealTimeScope::~RealTimeScope() {
    marked = false;
}
const RtFaults& RealTimeScope::faults() const noexcept {
    return counted;
}

}  // namespace brindlehum::test

using namespace brindlehum::test;
using Size = size_t;
using SSize = ptrdiff_t;

// A definition under a name of ours that the linker sees as the library's, free of the headers' declarations.
#define DEFINE(result, name, params)                        \
    extern "C" result guarded_##name params __asm__(#name); \
    extern "C" __attribute__((used)) result guarded_##name params

#define GUARD_VERSION(kind, result, name, params, args, version)   \
    DEFINE(result, name, params) {                                 \
        static constinit Next<result params> next{#name, version}; \
        note(Kind::kind, #name);                                   \
        return next.get() args;                                    \
    }
#define GUARD(kind, result, name, params, args) GUARD_VERSION(kind, result, name, params, args, nullptr)

#define ALLOCATION(result, name, params, call) \
    DEFINE(result, name, params) {             \
        note(Kind::allocation, #name);         \
        return call;                           \
    }

ALLOCATION(void*, malloc, (Size bytes), __libc_malloc(bytes))
ALLOCATION(void*, calloc, (Size count, Size bytes), __libc_calloc(count, bytes))
ALLOCATION(void*, realloc, (void* memory, Size bytes), __libc_realloc(memory, bytes))
ALLOCATION(void, free, (void* memory), __libc_free(memory))
ALLOCATION(void*, memalign, (Size alignment, Size bytes), __libc_memalign(alignment, bytes))
ALLOCATION(void*, aligned_alloc, (Size alignment, Size bytes), __libc_memalign(alignment, bytes))
ALLOCATION(int, posix_memalign, (void** memory, Size alignment, Size bytes),
           (*memory = __libc_memalign(alignment, bytes)) == nullptr ? ENOMEM : 0)

GUARD(lock, int, pthread_mutex_lock, (void* m), (m))
GUARD(lock, int, pthread_mutex_trylock, (void* m), (m))
GUARD(lock, int, pthread_mutex_timedlock, (void* m, const void* t), (m, t))
GUARD(lock, int, pthread_mutex_unlock, (void* m), (m))
GUARD_VERSION(lock, int, pthread_cond_wait, (void* c, void* m), (c, m), "GLIBC_2.3.2")
GUARD_VERSION(lock, int, pthread_cond_timedwait, (void* c, void* m, const void* t), (c, m, t), "GLIBC_2.3.2")
GUARD(lock, int, pthread_cond_clockwait, (void* c, void* m, int k, const void* t), (c, m, k, t))
GUARD_VERSION(lock, int, pthread_cond_signal, (void* c), (c), "GLIBC_2.3.2")
GUARD_VERSION(lock, int, pthread_cond_broadcast, (void* c), (c), "GLIBC_2.3.2")
GUARD(lock, int, pthread_rwlock_rdlock, (void* l), (l))
GUARD(lock, int, pthread_rwlock_wrlock, (void* l), (l))
GUARD(lock, int, pthread_join, (unsigned long t, void** r), (t, r))
GUARD(lock, int, sem_wait, (void* s), (s))
GUARD(lock, int, sem_post, (void* s), (s))

GUARD(systemCall, SSize, read, (int f, void* b, Size n), (f, b, n))
GUARD(systemCall, SSize, write, (int f, const void* b, Size n), (f, b, n))
GUARD(systemCall, SSize, pread, (int f, void* b, Size n, long o), (f, b, n, o))
GUARD(systemCall, int, close, (int f), (f))
GUARD(systemCall, int, fsync, (int f), (f))
GUARD(systemCall, int, poll, (void* p, unsigned long n, int t), (p, n, t))
GUARD(systemCall, SSize, send, (int f, const void* b, Size n, int g), (f, b, n, g))
GUARD(systemCall, SSize, recv, (int f, void* b, Size n, int g), (f, b, n, g))
GUARD(systemCall, SSize, sendmsg, (int f, const void* m, int g), (f, m, g))
GUARD(systemCall, SSize, recvmsg, (int f, void* m, int g), (f, m, g))
GUARD(systemCall, int, nanosleep, (const void* t, void* r), (t, r))
GUARD(systemCall, int, clock_nanosleep, (int k, int g, const void* t, void* r), (k, g, t, r))
GUARD(systemCall, int, sched_yield, (), ())
GUARD(systemCall, void*, mmap, (void* a, Size n, int p, int g, int f, long o), (a, n, p, g, f, o))
GUARD(systemCall, int, munmap, (void* a, Size n), (a, n))
GUARD(systemCall, int, pthread_create, (void* t, const void* a, void* (*f)(void*), void* d), (t, a, f, d))
// Variadic: passing on all the arguments that they may take is safe, since they don't read those that are absent.
GUARD(systemCall, int, open, (const char* p, int g, unsigned m), (p, g, m))
GUARD(systemCall, int, open64, (const char* p, int g, unsigned m), (p, g, m))
GUARD(systemCall, int, openat, (int d, const char* p, int g, unsigned m), (d, p, g, m))
GUARD(systemCall, int, ioctl, (int f, unsigned long r, void* a), (f, r, a))
GUARD(systemCall, long, syscall, (long n, long a, long b, long c, long d, long e, long f), (n, a, b, c, d, e, f))

GUARD(systemCall, Size, fwrite, (const void* b, Size s, Size n, void* f), (b, s, n, f))
GUARD(systemCall, int, fputs, (const char* t, void* f), (t, f))
GUARD(systemCall, int, puts, (const char* t), (t))
GUARD(systemCall, int, putchar, (int c), (c))
GUARD(systemCall, int, putc, (int c, void* f), (c, f))
GUARD(systemCall, int, fflush, (void* f), (f))
GUARD(systemCall, int, vfprintf, (void* f, const char* t, va_list a), (f, t, a))
GUARD(systemCall, int, vprintf, (const char* t, va_list a), (t, a))

#define PRINTF(name, params, call) \
    DEFINE(int, name, params) {    \
        va_list arguments;         \
        va_start(arguments, text); \
        const int written = call;  \
        va_end(arguments);         \
        return written;            \
    }
PRINTF(printf, (const char* text, ...), guarded_vprintf(text, arguments))
PRINTF(fprintf, (void* file, const char* text, ...), guarded_vfprintf(file, text, arguments))
