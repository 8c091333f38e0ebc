// Short hits: finds the first letters of a word, and packs blocks.
#include "catalog/short_hits.h"

namespace brindlehum {

namespace {

// Removes the first letter of `word` and returns it; 0 when there is none below U+0800.
uint32_t takeLetter(std::string_view& word) {
    if (word.empty()) { return 0; }
    const auto lead = uint8_t(word[0]);
    const size_t length = lead < 0x80 ? 1 : 2;
    if ((lead >= 0x80 && lead < 0xC2) || lead >= 0xE0 || word.size() < length) { return 0; }
    const uint32_t letter = length == 1 ? lead : uint32_t(lead & 0x1F) << 6 | (uint8_t(word[1]) & 0x3F);
    word.remove_prefix(length);
    return letter;
}

// Writes seven bits per byte, the lowest first.
void put(std::string& packed, uint32_t value) {
    for (; value >= 0x80; value >>= 7) { packed += char(value | 0x80); }
    packed += char(value);
}

uint32_t get(std::string_view packed, size_t& at) {
    uint32_t value = 0;
    for (int shift = 0; at < packed.size() && shift < 32; shift += 7) {
        const auto byte = uint8_t(packed[at++]);
        value |= uint32_t(byte & 0x7F) << shift;
        if (byte < 0x80) { break; }
    }
    return value;
}

}  // namespace

Beginning beginning(std::string_view word) {
    const uint32_t first = takeLetter(word);
    if (first == 0) { return {}; }
    const bool alone = word.empty();
    const uint32_t second = takeLetter(word);
    return {first << 11, second != 0 ? first << 11 | second : 0, alone || (second != 0 && word.empty())};
}

std::string packHits(const std::vector<Hit>& hits) {
    std::string packed;
    int64_t last = hits.empty() ? 0 : hits.front().id / filesABlock * filesABlock;
    for (const Hit& hit : hits) {
        put(packed, uint32_t(hit.id - last));
        put(packed, hit.hits);
        put(packed, hit.words);
        last = hit.id;
    }
    return packed;
}

void unpackHits(std::string_view packed, int64_t block, std::vector<Hit>& hits) {
    int64_t id = block * filesABlock;
    for (size_t at = 0; at < packed.size();) {
        id += get(packed, at);
        const uint32_t count = get(packed, at);
        hits.push_back({id, count, get(packed, at)});
    }
}

}  // namespace brindlehum
