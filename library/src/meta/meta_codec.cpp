// Reads and writes a SoundMeta as JSON, with a fast path for the form that we write.
#include "meta/meta_codec.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <nlohmann/json.hpp>

namespace brindlehum {

namespace {

SoundMeta decodeAnyJson(std::string_view json) {
    try {
        return nlohmann::json::parse(json).get<SoundMeta>();
    } catch (const nlohmann::json::exception&) { return {}; }
}

// The length in bytes of the UTF-8 sequence at `at` (Unicode 15, table 3-7), or 0 if it is ill-formed.
size_t utf8Length(std::string_view text, size_t at) {
    const auto byte = [&](size_t i) { return at + i < text.size() ? uint8_t(text[at + i]) : uint8_t(0); };
    const auto tail = [&](size_t i) { return (byte(i) & 0xC0) == 0x80; };
    const uint8_t lead = byte(0), second = byte(1);
    if (lead < 0x80) { return 1; }
    if (lead >= 0xC2 && lead <= 0xDF) { return tail(1) ? 2 : 0; }
    if (lead >= 0xE0 && lead <= 0xEF) {
        const bool allowed = (lead != 0xE0 || second >= 0xA0) && (lead != 0xED || second <= 0x9F);
        return allowed && tail(1) && tail(2) ? 3 : 0;
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        const bool allowed = (lead != 0xF0 || second >= 0x90) && (lead != 0xF4 || second <= 0x8F);
        return allowed && tail(1) && tail(2) && tail(3) ? 4 : 0;
    }
    return 0;
}

// Reads only the form that encodeMeta writes, which nearly every row has, and so is many times faster than a full JSON
// parser. Gives up at anything else, and never decides that a text is damaged.
class PlainReader {
public:
    explicit PlainReader(std::string_view json) : json_(json) {}

    bool read(SoundMeta& meta) {
        uint32_t seen = 0;
        if (!take('{')) { return false; }
        do {
            std::string_view key;
            if (!take('"') || !plainRun(key) || !take('"') || !take(':') || !value(meta, key, seen)) { return false; }
        } while (take(','));
        return take('}') && at_ == json_.size() && seen == allKeys;
    }

private:
    static constexpr uint32_t ratingKey = 1U << SoundMeta::ixmlTags.size();
    static constexpr uint32_t allKeys = 2 * ratingKey - 1;

    bool take(char c) {
        if (at_ >= json_.size() || json_[at_] != c) { return false; }
        ++at_;
        return true;
    }
    // Reads up to the next quote or escape; false at a control character or invalid UTF-8.
    bool plainRun(std::string_view& run) {
        const size_t start = at_;
        for (; at_ < json_.size(); ++at_) {
            const auto byte = uint8_t(json_[at_]);
            if (byte == '"' || byte == '\\') { break; }
            if (byte >= 0x20 && byte < 0x80) { continue; }
            const size_t length = byte < 0x20 ? 0 : utf8Length(json_, at_);
            if (length == 0) { return false; }
            at_ += length - 1;
        }
        run = json_.substr(start, at_ - start);
        return true;
    }
    // Tries the next key in alphabetical order first, since that is the order in which we write them.
    const SoundMeta::Tag* tagOf(std::string_view key) {
        static const auto byKey = [] {
            std::array<const SoundMeta::Tag*, SoundMeta::ixmlTags.size()> tags;
            std::ranges::transform(SoundMeta::ixmlTags, tags.begin(), [](const SoundMeta::Tag& tag) { return &tag; });
            std::ranges::sort(tags, {}, &SoundMeta::Tag::key);
            return tags;
        }();
        if (expected_ < byKey.size() && byKey[expected_]->key == key) { return byKey[expected_++]; }
        return std::ranges::find(SoundMeta::ixmlTags, key, &SoundMeta::Tag::key);
    }
    bool value(SoundMeta& meta, std::string_view key, uint32_t& seen) {
        const auto tag = tagOf(key);
        const bool isRating = tag == SoundMeta::ixmlTags.end() && key == "rating";
        const uint32_t mark = 1U << (tag - SoundMeta::ixmlTags.begin());
        if ((mark == ratingKey && !isRating) || (seen & mark) != 0) { return false; }
        seen |= mark;
        return isRating ? number(meta.rating) : text(meta.*tag->field);
    }
    bool text(std::string& text) {
        if (!take('"')) { return false; }
        std::string_view run;
        while (plainRun(run)) {
            text += run;
            if (take('"')) { return true; }
            if (!take('\\') || !escape(text)) { return false; }
        }
        return false;
    }
    bool escape(std::string& text) {
        static constexpr std::string_view written = "\"\\/bfnrt", meant = "\"\\/\b\f\n\r\t";
        const size_t index = at_ < json_.size() ? written.find(json_[at_]) : std::string_view::npos;
        if (index == std::string_view::npos) { return false; }
        text += meant[index];
        ++at_;
        return true;
    }
    bool number(int& number) {
        const size_t start = at_;
        constexpr size_t mostDigits = 9;
        for (number = 0; at_ < json_.size() && json_[at_] >= '0' && json_[at_] <= '9'; ++at_) {
            if (at_ - start == mostDigits) { return false; }
            number = 10 * number + (json_[at_] - '0');
        }
        return at_ == start + 1 || (at_ > start && json_[start] != '0');
    }

    std::string_view json_;
    size_t at_ = 0;
    size_t expected_ = 0;  // index of the next expected tag, by key
};

}  // namespace

std::string encodeMeta(const SoundMeta& meta) {
    try {
        return nlohmann::json(meta).dump();
    } catch (const nlohmann::json::exception&) { return "{}"; }
}

SoundMeta decodeMeta(std::string_view json) {
    SoundMeta meta;
    if (!PlainReader(json).read(meta)) { meta = decodeAnyJson(json); }
    return meta;
}

}  // namespace brindlehum
