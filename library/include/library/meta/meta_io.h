// MetaIO: the metadata of any sound file, from its content and its name. No shared state, any background thread.
#pragma once

#include <sys/types.h>

#include <filesystem>

#include "library/meta/sound_meta.h"

namespace brindlehum::MetaIO {

// What is embedded in the file, its gaps filled from the name. Never fails; takes up to two seconds for a compressed
// file.
SoundMeta read(const std::filesystem::path& file);
// Whether files of this extension take metadata themselves; for others the catalog and the log are its only place.
bool canWrite(const std::filesystem::path& file);
// Rewrites a WAV file with `meta` embedded; the file is the complete old or the complete new one at any moment. Returns
// the inode of the new one, so that the caller can notice a later replacement by another program. Throws Error:
// notEmbeddable (not a WAV file), notWritableWav, tooLargeForRiff, or an I/O error.
ino_t write(const SoundMeta& meta, const std::filesystem::path& file);

}  // namespace brindlehum::MetaIO
