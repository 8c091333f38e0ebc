// iXML documents as text, and the Description field of `bext`.
#pragma once

#include <string>
#include <string_view>

#include "library/meta/sound_meta.h"

namespace brindlehum::RIFFMeta {

// The document with the block of `meta` in place of its USER block, or else as its last element. An empty text, or one
// that is no iXML, becomes a new document. UTF-8.
std::string withUserBlock(std::string document, const SoundMeta& meta);

// Well-formed UTF-8 without the characters that XML 1.0 can't hold (control characters, of which a zero would end the
// document for other readers).
std::string storable(std::string_view text);

}  // namespace brindlehum::RIFFMeta
