// MetaIO: the metadata of any sound file, from its content and its name. No shared state, any background thread.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <optional>

#include "library/meta/sound_meta.h"

namespace brindlehum::MetaIO {

// The metadata embedded in the file; the file's name fills the gaps. Never fails; takes up to two seconds for a
// compressed file.
SoundMeta read(const std::filesystem::path& file);
// True when files with this extension can hold metadata; for others, only the catalog and the log store it.
bool canWrite(const std::filesystem::path& file);
// The record to start an edit from, if the file holds all of it: a WAV file, or any file that we wrote. None for
// other files: their rows in the catalog may have more. Takes its time, and throws Error when the file can't be read,
// since an edit of a half-read record would clear what wasn't read.
std::optional<SoundMeta> readRecord(const std::filesystem::path& file);
// Writes a new version of the file with `meta` embedded, in its chunks (WAV, RF64, W64) or its tags (FLAC, Ogg, MP3,
// MP4, AIFF); at any moment, the file is the complete old or the complete new one. Returns the new file's inode, so
// that the caller can notice a later replacement by another program. Throws Error: notEmbeddable (a file that can't
// hold metadata, or not without losing something else), notWritableWav, tooLargeForRiff, fileInUse, or an I/O error.
ino_t write(const SoundMeta& meta, const std::filesystem::path& file);

}  // namespace brindlehum::MetaIO
