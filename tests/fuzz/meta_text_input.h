// Any text as a USER block, as a file's name and as a category list: shared by the fuzzer and the replay of its corpus.
#pragma once

#include <filesystem>
#include <string>

#include "base/text.h"
#include "fuzz/require.h"
#include "library/meta/riff_meta.h"
#include "library/meta/ucs.h"
#include "support/audio_files.h"

namespace brindlehum::test {

inline void requireText(const SoundMeta& meta) {
    for (const SoundMeta::Tag& tag : SoundMeta::ixmlTags) {
        require(repairUtf8(meta.*tag.field) == meta.*tag.field, "well-formed text");
    }
}

inline void metaTextBytes(const std::string& text, const std::filesystem::path&) {
    const SoundMeta parsed = RIFFMeta::parseUSER(repairUtf8(text));
    requireText(parsed);
    // The first round drops characters that XML can't hold; further rounds change nothing.
    const SoundMeta once = RIFFMeta::parseUSER(RIFFMeta::userBlock(parsed));
    require(RIFFMeta::parseUSER(RIFFMeta::userBlock(once)) == once, "a block that reads as it was written");

    const SoundMeta named = SoundMeta::fromFileName(text);
    requireText(named);
    if (const auto name = named.ucsFileName()) {
        require(name->find('/') == std::string::npos, "a name and no path");
        const SoundMeta again = SoundMeta::fromFileName(*name + ".wav");
        require(again.ucsFileName() == name && again.category == named.category, "a name that reads as it was written");
    }

    const UCS list(text);
    for (const auto& [key, entry] : list.entries()) { require(list.lookup(entry.catID) == &entry, "a listed CatID"); }
}

}  // namespace brindlehum::test
