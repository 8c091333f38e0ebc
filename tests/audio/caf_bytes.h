// Core Audio Format files byte by byte, for headers that no library would write.
#pragma once

#include <bit>
#include <cstdint>
#include <string>

namespace brindlehum::test {

inline std::string be32(uint32_t v) {
    return {char(v >> 24), char(v >> 16), char(v >> 8), char(v)};
}

inline std::string cafChunk(const std::string& id, const std::string& body) {
    return id + be32(0) + be32(uint32_t(body.size())) + body;
}

// Four silent 16-bit frames.
inline std::string cafData(uint32_t channels) {
    return cafChunk("data", be32(0) + std::string(size_t(channels) * 8, '\0'));
}

// A file of 16-bit PCM with these chunks behind its description.
inline std::string cafFile(uint32_t channels, const std::string& chunks, double sampleRate = 48000) {
    const auto rateBits = std::bit_cast<uint64_t>(sampleRate);
    const std::string rate = be32(uint32_t(rateBits >> 32)) + be32(uint32_t(rateBits));
    const std::string format = "lpcm" + be32(0) + be32(channels * 2) + be32(1) + be32(channels) + be32(16);
    return std::string("caff\0\1\0\0", 8) + cafChunk("desc", rate + format) + chunks;
}

}  // namespace brindlehum::test
