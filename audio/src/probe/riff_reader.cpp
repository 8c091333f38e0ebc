// RIFFReader: walks over the first chunks of a RIFF file.
#include "audio/probe/riff_reader.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "base/error.h"
#include "base/file_handle.h"
#include "base/text.h"
#include "decode/chunks.h"
#include "probe/bext_description.h"

namespace brindlehum {

namespace {

bool isRiffExtension(const std::filesystem::path& path) {
    static constexpr std::array<std::string_view, 5> extensions = {".wav", ".wave", ".bwf", ".amb", ".rf64"};
    return std::ranges::find(extensions, lowerAscii(path.extension().string())) != extensions.end();
}

bool isRiff(const FileHandle& file) {
    char head[12];
    if (!file.readExactly(0, head, sizeof head)) { return false; }
    const std::string_view id(head, 4);
    return (id == "RIFF" || id == "RF64" || id == "BW64") && std::string_view(head + 8, 4) == "WAVE";
}

// The field has 256 bytes; a zero byte ends it early.
std::optional<std::string> description(const FileHandle& file, int64_t body) {
    std::array<char, 256> bytes{};
    const int64_t got = std::max<int64_t>(0, file.readAt(body, bytes.data(), bytes.size()));
    const auto* end = std::find(bytes.begin(), bytes.begin() + got, '\0');
    const std::string text = repairUtf8({bytes.data(), size_t(end - bytes.begin())});
    const std::string_view content = trimmed(text);
    if (content.empty()) { return std::nullopt; }
    return std::string(content);
}

std::optional<std::string> walk(const FileHandle& file) {
    constexpr int maxChunks = 64;
    int64_t position = 12;
    for (int i = 0; i < maxChunks; ++i) {
        uint8_t head[8];
        if (!file.readExactly(position, head, sizeof head)) { return std::nullopt; }
        if (std::string_view(reinterpret_cast<const char*>(head), 4) == "bext") {
            return description(file, position + 8);
        }
        const uint32_t size = readLE32(head + 4);
        // A 64-bit data chunk stores its true size elsewhere, so the chunks after it aren't searched.
        if (size == 0xFFFFFFFF) { return std::nullopt; }
        position += 8 + int64_t(size) + (size & 1);
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::string> bextDescription(const FileHandle& file, const std::filesystem::path& path) {
    return isRiffExtension(path) && isRiff(file) ? walk(file) : std::nullopt;
}

std::optional<std::string> RIFFReader::bextDescription(const std::filesystem::path& path) {
    if (!isRiffExtension(path)) { return std::nullopt; }
    try {
        return brindlehum::bextDescription(FileHandle(path), path);
    } catch (const Error&) {
        return std::nullopt;  // a file that can't be opened has no description
    }
}

}  // namespace brindlehum
