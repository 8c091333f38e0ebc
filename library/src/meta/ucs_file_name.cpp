// The naming scheme CatID_FXName_Designer_Source: reads it from a file's name, and makes a name of it.
#include <algorithm>

#include "base/text.h"
#include "library/meta/sound_meta.h"
#include "library/meta/ucs.h"

namespace brindlehum {

namespace {

// True for at least three capitals, then letters and digits; one hyphen may add a second word of letters and digits.
bool looksLikeCatID(std::string_view text) {
    const auto capital = [](char c) { return c >= 'A' && c <= 'Z'; };
    const auto alphanumeric = [&](char c) { return capital(c) || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9'); };
    const size_t hyphen = text.find('-');
    const std::string_view word = text.substr(0, hyphen);
    if (word.size() < 3 || !std::all_of(word.begin(), word.begin() + 3, capital)) { return false; }
    if (!std::ranges::all_of(word, alphanumeric)) { return false; }
    if (hyphen == std::string_view::npos) { return true; }
    const std::string_view further = text.substr(hyphen + 1);
    return !further.empty() && std::ranges::all_of(further, alphanumeric);
}

void setCategories(SoundMeta& meta) {
    if (const UCS::Entry* entry = UCS::shared().lookup(meta.catID)) {
        meta.category = entry->category;
        meta.subCategory = entry->subCategory;
        return;
    }
    // For an unlisted CatID, split before the first capitalised word: AMBCity becomes AMB and City.
    const auto lower = [](char c) { return c >= 'a' && c <= 'z'; };
    const auto first = std::find_if(meta.catID.begin(), meta.catID.end(), lower);
    if (first == meta.catID.end()) { return; }
    meta.category.assign(meta.catID.begin(), first - 1);  // at least three capitals come first
    meta.subCategory.assign(first - 1, meta.catID.end());
}

}  // namespace

SoundMeta SoundMeta::fromFileName(const std::filesystem::path& file) {
    SoundMeta meta;
    const std::string name = repairUtf8(file.stem().string());
    const std::vector<std::string_view> parts = split(name, "_");
    if (parts.size() < 2 || !looksLikeCatID(parts[0])) { return meta; }
    meta.catID = parts[0];
    meta.fxName = parts[1];
    if (parts.size() > 2) { meta.designer = parts[2]; }
    if (parts.size() > 3) { meta.source = name.substr(size_t(parts[3].data() - name.data())); }
    setCategories(meta);
    return meta;
}

std::optional<std::string> SoundMeta::ucsFileName() const {
    if (catID.empty() || fxName.empty()) { return std::nullopt; }
    std::string name;
    for (const std::string* part : {&catID, &fxName, &designer, &source}) {
        if (part->empty()) { continue; }
        if (!name.empty()) { name += '_'; }
        for (const char c : *part) { name += c == '_' ? ' ' : c == '/' ? '-' : c; }
    }
    return name;
}

}  // namespace brindlehum
