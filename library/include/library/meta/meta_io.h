// MetaIO: the metadata of any sound file, from its content and its name. No shared state, any background thread.
#pragma once

#include <sys/types.h>

#include <filesystem>

#include "library/meta/sound_meta.h"

namespace brindlehum::MetaIO {

// The metadata embedded in the file; the file's name fills the gaps. Never fails; takes up to two seconds for a
// compressed file.
SoundMeta read(const std::filesystem::path& file);
// True when files with this extension can hold metadata; for others, only the catalog and the log store it.
bool canWrite(const std::filesystem::path& file);
// Rewrites a WAV file with `meta` embedded; at any moment, the file is the complete old or the complete new one.
// Returns the new file's inode, so that the caller can notice a later replacement by another program. Throws Error:
// notEmbeddable (not a WAV file), notWritableWav, tooLargeForRiff, or an I/O error.
ino_t write(const SoundMeta& meta, const std::filesystem::path& file);

}  // namespace brindlehum::MetaIO
