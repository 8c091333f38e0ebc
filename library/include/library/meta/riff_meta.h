// RIFFMeta: the metadata in WAVE files (WAV, RF64, BW64, W64): the `bext` chunk (EBU Tech 3285) and the USER block of
// an `iXML` chunk.
//
// No shared state, any thread; blocking I/O.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/file_handle.h"
#include "library/meta/sound_meta.h"

namespace brindlehum::RIFFMeta {

struct Chunk {
    std::string id;       // any invalid UTF-8 is repaired
    uint64_t offset = 0;  // of the content in the file
    uint64_t size = 0;    // of the content, as stated but limited to the bytes in the file
};
// All chunks of a WAVE file in order, up to `maxChunks`; none for any other file. Finds the next chunk even if a
// writer omitted the pad byte after an odd one.
constexpr size_t maxChunks = 65536;
std::optional<std::vector<Chunk>> chunks(const FileHandle& file);

// Never fails; unreadable fields stay empty. The description may come from `bext`, everything else from iXML.
SoundMeta read(const std::filesystem::path& file);

// The record to start an edit from, if the file holds all of it: one named .wav, .wave or .bwf, or any
// that we wrote. Throws Error
// when the file can't be read.
std::optional<SoundMeta> readRecord(const std::filesystem::path& file);

// Writes a new version of the file: `meta` in one `bext` and one `iXML` chunk before the sound, all other chunks byte
// for byte, and the old file's owner, permissions and extended attributes. Writes it beside the old one as
// `.<file name>.bh-tmp`, syncs it to disk and swaps it in: at any moment, even in a crash, the file is the complete old
// or the complete new one. The next write clears a crash's leftover. Follows a symbolic link; other hard links of the
// file keep the old version. Refuses a write-protected file. Memory use doesn't grow with the file. Returns the new
// file's inode. Throws Error: notWritableWav, tooLargeForRiff (a plain WAV past 4 GiB), fileInUse, or other when the
// system refuses or another of our writers has it.
ino_t write(const SoundMeta& meta, const std::filesystem::path& file);

// The block as it is written into iXML, without the characters that XML can't hold.
std::string userBlock(const SoundMeta& meta);
// Reads the first USER block of an iXML document (UTF-8), which holds either tags or KEY=value lines.
SoundMeta parseUSER(std::string_view xml);

}  // namespace brindlehum::RIFFMeta
