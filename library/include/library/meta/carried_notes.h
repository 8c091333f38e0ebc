// CarriedNotes: what a sound made from another takes along of what that one says of itself.
#pragma once

#include <cstdint>
#include <filesystem>

#include "audio/write/wav_form.h"

namespace brindlehum {

// From a file of any format, for the part of it from frame `lower` to before `upper` (at its own rate):
// - the metadata that MetaIO reads, in the USER block of an iXML chunk, with the production's project, scene and take;
// - of a WAVE file, who recorded it and when (the time reference moved to the part), and its coding history;
// - of a WAVE file, the cue points in the part with their labels, notes and lengths.
// The description is left to the caller: in iXML stands that of the sound. Never throws; what can't be read isn't
// carried. Any thread; blocking I/O.
WavNotes carriedNotes(const std::filesystem::path& source, int64_t lower, int64_t upper);

}  // namespace brindlehum
