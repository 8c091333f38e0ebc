// RIFFMeta: the metadata in WAV files: the `bext` chunk (EBU Tech 3285) and the USER block of an `iXML` chunk.
//
// No shared state, any thread; blocking I/O. RF64 and BW64 files are not read or written here.
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
    std::string id;       // repaired where it isn't UTF-8
    uint64_t offset = 0;  // of the content in the file
    uint64_t size = 0;    // of the content, as stated but cut to what the file holds
};
// All chunks of a RIFF/WAVE file in order, up to `maxChunks`; none for any other file. Finds the
// next chunk also where a writer omitted the pad byte behind an odd one.
constexpr size_t maxChunks = 65536;
std::optional<std::vector<Chunk>> chunks(const FileHandle& file);

// Never fails; what can't be read stays empty. The description may come from `bext`, all else is from iXML.
SoundMeta read(const std::filesystem::path& file);

// Writes a whole new file with `meta` in one `bext` and one `iXML` chunk before the sound, all other chunks byte for
// byte as they were, and the old file's owner, permissions and extended attributes. It is written beside the old one as
// `.<file name>.bh-tmp`, brought to disk and swapped in: at any moment, also of a crash, the file is the complete old
// or the complete new one. A leftover of a crash is cleared by the next write. A symbolic link is followed; other hard
// links of the file keep the old version. A write-protected file is refused. Memory doesn't grow with the file.
// Returns the inode of the new one. Throws Error: notWritableWav, tooLargeForRiff (past the RIFF limit of 4 GiB), or
// other when the system refuses, when the file changes meanwhile, or when another writer is at it.
ino_t write(const SoundMeta& meta, const std::filesystem::path& file);

// The block as written into iXML. Characters that XML can't hold are left out.
std::string userBlock(const SoundMeta& meta);
// From the first USER block of an iXML document (UTF-8), made of tags or of KEY=value lines.
SoundMeta parseUSER(std::string_view xml);

}  // namespace brindlehum::RIFFMeta
