// The chunks of a WAVE file in any of its containers, in the detail that a rewrite needs.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "library/meta/riff_meta.h"

namespace brindlehum::RIFFMeta {

// RF64 is RIFF with sizes of 64 bits in a `ds64` chunk (EBU Tech 3306), also under the name BW64 (ITU-R BS.2088). W64
// has GUIDs for ids, sizes of 64 bits that count the header, and chunks that begin at multiples of eight.
enum class Container { riff, rf64, w64 };

constexpr size_t w64HeadBytes = 40;

struct Walk {
    Container container = Container::riff;
    std::vector<Chunk> chunks;         // the id of a W64 chunk is the text in its GUID, or empty for an unknown GUID
    std::vector<bool> sizedElsewhere;  // RF64: for each chunk, whether its size stands in `ds64`
    bool toTheEnd = false;             // false: the file has more than maxChunks
    // The file ends inside the last chunk or its header.
    bool cutOff = false;
};
std::optional<Walk> walk(const FileHandle& file);

const Chunk* find(const std::vector<Chunk>& chunks, std::string_view id);  // the first one; null if there is none

// Reads up to `most` bytes of the content; fewer if the file ends or can't be read.
std::string content(const FileHandle& file, const Chunk& chunk, uint64_t most);

std::string le32(uint32_t value);
std::string le64(uint64_t value);
uint64_t readLE(const char* bytes, size_t count);

// How a container writes its chunks.
size_t idBytes(Container container);
size_t headerBytes(Container container);  // of a chunk: id and size
std::string storedId(Container container, std::string_view id);
std::string storedSize(Container container, uint64_t contentBytes);
uint64_t padding(Container container, uint64_t contentBytes);

}  // namespace brindlehum::RIFFMeta
