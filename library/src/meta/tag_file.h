// TagFile: the metadata record in the tags of FLAC, Ogg, MP3, MP4 and AIFF files.
//
// A field is stored in the format's own tag for it (the title, the artist) or under its name in iXML (`CATID`). The tag
// EMBEDDER marks a file that we wrote: its tags then are the whole record. No shared state, any thread; blocking I/O.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>

#include "library/meta/sound_meta.h"

namespace brindlehum::TagFile {

struct Stored {
    SoundMeta meta;
    bool isWhole = false;  // the file has a record that we wrote; else `meta` comes from other programs' tags
};
// Never fails. Stops reading when `stop` returns true.
Stored read(const std::filesystem::path& file, const std::function<bool()>& stop);

// Takes its time, and throws Error when the file can't be read.
Stored readRecord(const std::filesystem::path& file);

// Writes a new version of the file beside it and swaps it in, as RIFFMeta does. All other tags and the sound's bytes
// stay: the new version is compared with the old one before the swap. A standard tag that holds something else than
// the field stays too. Returns the new file's inode. Throws Error: notEmbeddable when the file can't hold the record
// without losing something, fileInUse, or other.
ino_t write(const SoundMeta& meta, const std::filesystem::path& file);

}  // namespace brindlehum::TagFile
