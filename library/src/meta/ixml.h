// iXML documents as text, and the Description field of `bext`.
#pragma once

#include <string>
#include <string_view>

#include "library/meta/sound_meta.h"

namespace brindlehum::RIFFMeta {

// Replaces the USER block of the document with that of `meta`, or adds it as the last element. If the text is empty or
// isn't iXML, returns a new document. UTF-8.
std::string withUserBlock(std::string document, const SoundMeta& meta);

// True when the USER block is ours: its tags are then the whole record.
bool isEmbeddedByUs(std::string_view xml);

// The text as well-formed UTF-8 without the characters that XML 1.0 can't hold (control characters; a zero, for one,
// would end the document for other readers).
std::string storable(std::string_view text);

}  // namespace brindlehum::RIFFMeta
