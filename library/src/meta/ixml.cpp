// The USER block: writes it, reads it, and puts it into another program's document.
#include "meta/ixml.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

#include "base/text.h"
#include "library/meta/riff_meta.h"
#include "meta/user_block.h"

namespace brindlehum::RIFFMeta {

namespace {

constexpr std::string_view newDocument =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<BWFXML><IXML_VERSION>2.10</IXML_VERSION></BWFXML>";
constexpr std::string_view userStart = "<USER>";
constexpr std::string_view userEnd = "</USER>";
constexpr std::string_view documentEnd = "</BWFXML>";

std::string replaced(std::string_view text, std::string_view from, std::string_view to) {
    std::string out;
    for (size_t at = 0;;) {
        const size_t found = text.find(from, at);
        out += text.substr(at, found - at);
        if (found == std::string_view::npos) { return out; }
        out += to;
        at = found + from.size();
    }
}

std::string escaped(std::string_view value) {
    return replaced(replaced(replaced(storable(value), "&", "&amp;"), "<", "&lt;"), ">", "&gt;");
}

std::string unescaped(std::string_view text) {
    std::string value(text);
    constexpr std::pair<std::string_view, std::string_view> entities[] = {
        {"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&apos;", "'"}, {"&amp;", "&"}};
    for (const auto& [entity, character] : entities) { value = replaced(value, entity, character); }
    return std::string(trimmed(value));
}

// 0 when the text isn't an integer.
int ratingOf(std::string_view text) {
    text = trimmed(text);
    if (text.starts_with('+') && !text.starts_with("+-")) { text.remove_prefix(1); }
    int rating = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), rating);
    return error == std::errc() && end == text.data() + text.size() ? rating : 0;
}

// The first USER block; empty if there is none.
UserBlock storedBlock(std::string_view xml) {
    const size_t start = xml.find(userStart);
    if (start == std::string_view::npos) { return UserBlock({}); }
    xml.remove_prefix(start + userStart.size());
    return UserBlock(xml.substr(0, xml.find(userEnd)));
}

// The value that an edited block gets; none removes the tag.
std::optional<std::string> valueOf(const std::string& text) {
    return text.empty() ? std::nullopt : std::optional(escaped(text));
}

std::optional<std::string> fullCategory(const SoundMeta& meta) {
    const bool both = !meta.category.empty() && !meta.subCategory.empty();
    return valueOf(meta.category + (both ? "-" : "") + meta.subCategory);
}

// Leaves an element as it was stored when the record holds what it reads as; a line becomes an element.
std::string edited(std::string_view content, const SoundMeta& meta) {
    UserBlock block(content);
    const bool hadCategory = block.value("CATEGORY") || block.value("SUBCATEGORY");
    for (const SoundMeta::Tag& tag : SoundMeta::ixmlTags) {
        const bool kept = block.hasElement(tag.name) && unescaped(*block.value(tag.name)) == meta.*tag.field;
        if (!kept) { block.set(tag.name, valueOf(meta.*tag.field)); }
    }
    const auto full = fullCategory(meta);
    if (full || hadCategory) { block.set("CATEGORYFULL", full); }
    const auto rating = block.value("RATING");
    if (!rating || ratingOf(*rating) != meta.rating) {
        block.set("RATING", meta.rating >= 1 ? std::optional(std::to_string(meta.rating)) : std::nullopt);
    }
    block.set("EMBEDDER", "Brindlehum");
    return std::string(userStart) + block.text() + std::string(userEnd);
}

}  // namespace

std::string storable(std::string_view text) {
    std::string out = repairUtf8(text);
    std::erase_if(out, [](char c) { return uint8_t(c) < 0x20 && c != '\t' && c != '\n' && c != '\r'; });
    return replaced(replaced(out, "\xEF\xBF\xBE", ""), "\xEF\xBF\xBF", "");
}

std::string userBlock(const SoundMeta& meta) {
    return edited({}, meta);
}

bool isEmbeddedByUs(std::string_view xml) {
    const UserBlock block = storedBlock(xml);
    const auto embedder = block.value("EMBEDDER");
    return embedder && trimmed(*embedder) == "Brindlehum";
}

SoundMeta parseUSER(std::string_view xml) {
    SoundMeta meta;
    const UserBlock block = storedBlock(xml);
    for (const SoundMeta::Tag& tag : SoundMeta::ixmlTags) {
        if (const auto text = block.value(tag.name)) { meta.*tag.field = unescaped(*text); }
    }
    meta.rating = ratingOf(block.value("RATING").value_or(""));
    return meta;
}

std::string withUserBlock(std::string document, const SoundMeta& meta) {
    const size_t start = document.find(userStart);
    const size_t end = start == std::string::npos ? start : document.find(userEnd, start);
    if (end != std::string::npos) {
        const size_t content = start + userStart.size();
        const std::string block = edited(std::string_view(document).substr(content, end - content), meta);
        return document.replace(start, end + userEnd.size() - start, block);
    }
    if (document.find(documentEnd) == std::string::npos) { document = newDocument; }
    return document.insert(document.find(documentEnd), userBlock(meta));
}

}  // namespace brindlehum::RIFFMeta
