// AlignedArray: a zero-filled array on a cache-line boundary, for buffers that vector code reads.
#pragma once

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <type_traits>

namespace brindlehum {

inline constexpr size_t cacheLine = 64;

struct AlignedDelete {
    void operator()(void* memory) const noexcept { ::operator delete[](memory, std::align_val_t{cacheLine}); }
};

template <class T>
using AlignedArray = std::unique_ptr<T[], AlignedDelete>;

// Only for types whose zero value is all bits zero and that need no destructor. Throws std::bad_alloc.
template <class T>
AlignedArray<T> makeAligned(size_t count) {
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);
    void* memory = ::operator new[](count * sizeof(T), std::align_val_t{cacheLine});
    std::memset(memory, 0, count * sizeof(T));
    return AlignedArray<T>(static_cast<T*>(memory));
}

}  // namespace brindlehum
