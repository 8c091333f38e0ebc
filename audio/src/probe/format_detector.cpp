// FormatDetector: decides by the layout first, the file's name second, the channel count last.
#include "audio/probe/format_detector.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "audio/speakers/channel_layout.h"
#include "base/text.h"

namespace brindlehum::FormatDetector {

namespace {

constexpr uint32_t ambisonicBFormat = 107U << 16 | 4;
constexpr uint32_t sn3dFamily = 190;  // upper half of a layout tag
constexpr uint32_t n3dFamily = 191;
constexpr uint32_t sn3dLabels = 2;  // upper half of a label
constexpr uint32_t n3dLabels = 3;

// 0 for a channel count that isn't a full sphere of order 1 to 3.
int ambisonicOrder(int channels) {
    return channels == 4 ? 1 : channels == 9 ? 2 : channels == 16 ? 3 : 0;
}

bool allOfFamily(const std::vector<uint32_t>& labels, uint32_t family) {
    return !labels.empty() && std::ranges::all_of(labels, [&](uint32_t label) { return label >> 16 == family; });
}

// True when the labels are W, X, Y and Z, each at least once, and nothing else.
bool areBFormatLabels(const std::vector<uint32_t>& labels) {
    std::vector<uint32_t> sorted = labels;
    std::ranges::sort(sorted);
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    return sorted == std::vector<uint32_t>{200, 201, 202, 203};
}

std::optional<SourceFormat> fromLayout(int channels, int order, const std::vector<uint32_t>& labels, uint32_t tag) {
    if (tag == ambisonicBFormat && channels == 4) { return SourceFormat::ambisonic(1, AmbiNorm::fuma); }
    if (order == 0) { return std::nullopt; }
    if (tag >> 16 == sn3dFamily) { return SourceFormat::ambisonic(order, AmbiNorm::sn3d); }
    if (tag >> 16 == n3dFamily) { return SourceFormat::ambisonic(order, AmbiNorm::n3d); }
    if (allOfFamily(labels, sn3dLabels)) { return SourceFormat::ambisonic(order, AmbiNorm::sn3d); }
    if (allOfFamily(labels, n3dLabels)) { return SourceFormat::ambisonic(order, AmbiNorm::n3d); }
    if (channels == 4 && areBFormatLabels(labels)) { return SourceFormat::ambisonic(1, AmbiNorm::fuma); }
    return std::nullopt;
}

std::optional<SourceFormat> fromName(const std::filesystem::path& path, int channels, int order) {
    static constexpr std::array<std::string_view, 14> keywords = {
        "ambix", "ambisonic", "b-format", "bformat", "b_format", "_foa", " foa",
        "foa_",  "_hoa",      " hoa",     "hoa_",    "sn3d",     "_acn", "soundfield"};
    if (order == 0) { return std::nullopt; }
    const std::string name = lowerAscii(path.stem().string());
    const auto holds = [&](std::string_view word) { return name.find(word) != std::string::npos; };
    const bool amb = lowerAscii(path.extension().string()) == ".amb";
    if (channels == 4 && (amb || holds("fuma"))) { return SourceFormat::ambisonic(1, AmbiNorm::fuma); }
    if (std::ranges::none_of(keywords, holds)) { return std::nullopt; }
    return SourceFormat::ambisonic(order, holds("n3d") && !holds("sn3d") ? AmbiNorm::n3d : AmbiNorm::sn3d);
}

}  // namespace

SourceFormat detect(const std::filesystem::path& path, int channels, const std::vector<uint32_t>& labels,
                    uint32_t layoutTag) {
    const int order = ambisonicOrder(channels);
    if (const auto format = fromLayout(channels, order, labels, layoutTag)) { return *format; }
    if (const auto format = fromName(path, channels, order)) { return *format; }
    if (channels == 2) { return SourceFormat::stereo(); }
    if (channels == 1) { return SourceFormat::mono(); }
    if (!labels.empty() && int64_t(labels.size()) == channels) {
        if (auto list = ChannelLabels::speakers(labels)) { return SourceFormat::speakers(std::move(*list)); }
    }
    const std::vector<SourceFormat> options = SourceFormat::options(channels);
    return options.empty() ? SourceFormat::discrete(channels) : options.front();
}

}  // namespace brindlehum::FormatDetector
