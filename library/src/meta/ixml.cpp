// The USER block: writes it, reads it, and puts it into another program's document.
#include "meta/ixml.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

#include "base/text.h"
#include "library/meta/riff_meta.h"

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

std::string element(std::string_view tag, const std::string& content) {
    const std::string name(tag);
    return "<" + name + ">" + content + "</" + name + ">";
}

// The text between the first `start` and the next `end`; none when either is missing.
std::optional<std::string_view> between(std::string_view text, std::string_view start, std::string_view end) {
    const size_t found = text.find(start);
    if (found == std::string_view::npos) { return std::nullopt; }
    text.remove_prefix(found + start.size());
    const size_t length = text.find(end);
    return length == std::string_view::npos ? std::nullopt : std::optional(text.substr(0, length));
}

std::optional<std::string_view> elementText(std::string_view block, std::string_view tag) {
    const std::string name(tag);
    return between(block, "<" + name + ">", "</" + name + ">");
}

// The lines that begin outside of elements, since a later line of a long text must not count as a tag.
std::vector<std::string_view> linesBesideElements(std::string_view block) {
    std::vector<std::string_view> texts;
    const auto note = [&](std::string_view tag) {
        if (const auto text = elementText(block, tag)) { texts.push_back(*text); }
    };
    for (const SoundMeta::Tag& tag : SoundMeta::ixmlTags) { note(tag.name); }
    note("CATEGORYFULL");
    std::vector<std::string_view> lines = split(block, "\n");
    std::erase_if(lines, [&](std::string_view line) {
        return std::ranges::any_of(texts, [&](std::string_view text) {
            return line.data() > text.data() && line.data() < text.data() + text.size();
        });
    });
    return lines;
}

// Finds "TAG=value" or "TAG:value" at the start of a line; the tag may be in any case.
std::optional<std::string_view> lineText(const std::vector<std::string_view>& lines, std::string_view tag) {
    for (const std::string_view line : lines) {
        if (line.size() <= tag.size() || (line[tag.size()] != '=' && line[tag.size()] != ':')) { continue; }
        if (upperAscii(line.substr(0, tag.size())) == tag) { return line.substr(tag.size() + 1); }
    }
    return std::nullopt;
}

// 0 when the text isn't an integer.
int ratingOf(std::string_view text) {
    text = trimmed(text);
    if (text.starts_with('+') && !text.starts_with("+-")) { text.remove_prefix(1); }
    int rating = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), rating);
    return error == std::errc() && end == text.data() + text.size() ? rating : 0;
}

}  // namespace

std::string storable(std::string_view text) {
    std::string out = repairUtf8(text);
    std::erase_if(out, [](char c) { return uint8_t(c) < 0x20 && c != '\t' && c != '\n' && c != '\r'; });
    return replaced(replaced(out, "\xEF\xBF\xBE", ""), "\xEF\xBF\xBF", "");
}

std::string userBlock(const SoundMeta& meta) {
    std::string block(userStart);
    for (const SoundMeta::Tag& tag : SoundMeta::ixmlTags) {
        const std::string& value = meta.*tag.field;
        if (!value.empty()) { block += element(tag.name, escaped(value)); }
    }
    if (!meta.category.empty() || !meta.subCategory.empty()) {
        const bool both = !meta.category.empty() && !meta.subCategory.empty();
        block += element("CATEGORYFULL", escaped(meta.category + (both ? "-" : "") + meta.subCategory));
    }
    if (meta.rating >= 1) { block += element("RATING", std::to_string(meta.rating)); }
    return block + element("EMBEDDER", "Brindlehum") + std::string(userEnd);
}

SoundMeta parseUSER(std::string_view xml) {
    SoundMeta meta;
    const size_t start = xml.find(userStart);
    if (start == std::string_view::npos) { return meta; }
    xml.remove_prefix(start + userStart.size());
    const std::string_view block = xml.substr(0, xml.find(userEnd));
    const std::vector<std::string_view> lines = linesBesideElements(block);
    for (const SoundMeta::Tag& tag : SoundMeta::ixmlTags) {
        std::optional<std::string_view> text = elementText(block, tag.name);
        if (!text) { text = lineText(lines, tag.name); }
        if (text) { meta.*tag.field = unescaped(*text); }
    }
    meta.rating = ratingOf(elementText(block, "RATING").value_or(""));
    return meta;
}

std::string withUserBlock(std::string document, const SoundMeta& meta) {
    const std::string block = userBlock(meta);
    const size_t start = document.find(userStart);
    const size_t end = start == std::string::npos ? start : document.find(userEnd, start);
    if (end != std::string::npos) { return document.replace(start, end + userEnd.size() - start, block); }
    if (document.find(documentEnd) == std::string::npos) { document = newDocument; }
    return document.insert(document.find(documentEnd), block);
}

}  // namespace brindlehum::RIFFMeta
