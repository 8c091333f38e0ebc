// Published generators that give the same numbers on every machine: FNV-1a and SplitMix64.
#pragma once

#include <cstdint>
#include <string_view>

namespace brindlehum {

// FNV-1a, 64 bits (Fowler, Noll, Vo).
constexpr uint64_t fnv1a(std::string_view text) {
    uint64_t hash = 0xcbf29ce484222325;
    for (const char c : text) { hash = (hash ^ uint8_t(c)) * 0x100000001b3; }
    return hash;
}

// SplitMix64 (Steele, Lea, Flood, "Fast splittable pseudorandom number generators", 2014).
class SplitMix64 {
public:
    explicit constexpr SplitMix64(uint64_t seed) : state_(seed) {}
    constexpr uint64_t next() {
        uint64_t z = state_ += 0x9e3779b97f4a7c15;
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9;
        z = (z ^ (z >> 27)) * 0x94d049bb133111eb;
        return z ^ (z >> 31);
    }
    // 0 to below 1.
    constexpr double uniform() { return double(next() >> 11) * 0x1p-53; }

private:
    uint64_t state_;
};

}  // namespace brindlehum
