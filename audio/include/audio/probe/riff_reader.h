// RIFFReader: the description of a Broadcast Wave file (EBU Tech 3285), read without decoding the file.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace brindlehum::RIFFReader {

// The trimmed Description field of the first `bext` chunk among the first 64 chunks of a RIFF, RF64 or BW64 file. None
// for any other file, without a `bext` chunk, or when the field is blank. Blocking I/O, can't fail.
std::optional<std::string> bextDescription(const std::filesystem::path& path);

}  // namespace brindlehum::RIFFReader
