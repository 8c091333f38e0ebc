// SourceFormat: the names of formats, and the formats offered for a channel count.
#include "audio/speakers/source_format.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

#include "audio/speakers/channel_layout.h"
#include "base/text.h"

namespace brindlehum {

namespace {

using enum SpeakerID;

SpeakerList quad() {
    return {L, R, Ls, Rs};
}

std::string speakerListName(const SpeakerList& list) {
    if (list == SpeakerList{C}) { return "Mono"; }
    if (list == SpeakerList{L, R}) { return "Stereo"; }
    if (list == quad()) { return "Quad"; }
    for (const LayoutID layout : allLayouts) {
        if (list == speakers(layout)) { return std::string(displayName(layout)); }
        const SpeakerList* film = filmOrder(layout);
        if (film && list == *film) { return std::string(displayName(layout)) + " Film"; }
        const auto wave = WaveMask::mask(speakers(layout));
        if (wave && list == wave->order) { return std::string(displayName(layout)) + " (WAVE order)"; }
    }
    return std::to_string(list.size()) + "-ch bed";
}

std::string ambisonicName(const Ambisonic& ambisonic) {
    static constexpr std::array<std::string_view, 3> prefixes = {"AmbiX ", "ACN/N3D ", "FuMa "};
    static constexpr std::array<std::string_view, 4> ordinals = {"", "1st", "2nd", "3rd"};
    return std::string(prefixes[size_t(ambisonic.norm)])
        .append(ordinals[size_t(std::clamp(ambisonic.order, 0, 3))])
        .append(" order");
}

// The formats offered for a channel count, without the discrete one at the end.
std::vector<SourceFormat> spatialOptions(int channels) {
    using enum LayoutID;
    const auto bed = [](LayoutID layout) { return SourceFormat::speakers(speakers(layout)); };
    const auto film = [](LayoutID layout) { return SourceFormat::speakers(*filmOrder(layout)); };
    const auto ambi = SourceFormat::ambisonic;
    switch (channels) {
        case 2:
            return {SourceFormat::stereo()};
        case 4:
            return {SourceFormat::speakers(quad()), ambi(1, AmbiNorm::sn3d), ambi(1, AmbiNorm::fuma)};
        case 6:
            return {bed(l51), film(l51)};
        case 8:
            return {bed(l71), film(l71)};
        case 9:
            return {ambi(2, AmbiNorm::sn3d), ambi(2, AmbiNorm::n3d)};
        case 10:
            return {bed(l712), bed(l514)};
        case 12:
            return {bed(l714), film(l714)};
        case 16:
            return {bed(l916), ambi(3, AmbiNorm::sn3d), ambi(3, AmbiNorm::n3d)};
        default:
            return {};
    }
}

constexpr std::array<std::string_view, 3> normNames = {"sn3d", "n3d", "fuma"};

}  // namespace

std::string_view rawValue(AmbiNorm norm) {
    return normNames[size_t(norm)];
}

std::optional<AmbiNorm> ambiNormFromRaw(std::string_view raw) {
    const auto* at = std::ranges::find(normNames, raw);
    if (at == normNames.end()) { return std::nullopt; }
    return static_cast<AmbiNorm>(at - normNames.begin());
}

std::string SourceFormat::displayName() const {
    if (const SpeakerList* list = asSpeakers()) { return speakerListName(*list); }
    if (const Ambisonic* ambisonic = asAmbisonic()) { return ambisonicName(*ambisonic); }
    return std::to_string(asDiscrete()->channels) + "-ch discrete";
}

std::vector<SourceFormat> SourceFormat::options(int channels) {
    if (channels < 1) { return {}; }
    if (channels == 1) { return {mono()}; }
    std::vector<SourceFormat> out = spatialOptions(channels);
    out.push_back(discrete(channels));
    return out;
}

std::vector<SourceFormat> SourceFormat::waveOrders(int channels) {
    std::vector<SourceFormat> out;
    for (const LayoutID layout : allLayouts) {
        const SpeakerList& own = brindlehum::speakers(layout);
        const auto wave = WaveMask::mask(own);
        if (int(own.size()) == channels && wave && wave->order != own) { out.push_back(speakers(wave->order)); }
    }
    return out;
}

int SourceFormat::channels() const {
    if (const SpeakerList* list = asSpeakers()) { return int(list->size()); }
    if (const Ambisonic* field = asAmbisonic()) { return (field->order + 1) * (field->order + 1); }
    return asDiscrete()->channels;
}

std::string rawValue(const SourceFormat& format) {
    if (const SpeakerList* list = format.asSpeakers()) {
        std::string text = "speakers";
        for (const SpeakerID speaker : *list) { text.append(" ").append(rawValue(speaker)); }
        return text;
    }
    if (const Ambisonic* field = format.asAmbisonic()) {
        return "ambisonic " + std::to_string(field->order) + " " + std::string(rawValue(field->norm));
    }
    return "discrete " + std::to_string(format.channels());
}

std::optional<SourceFormat> sourceFormatFromRaw(std::string_view raw) {
    const std::vector<std::string_view> words = split(raw, " ");
    const auto number = [](std::string_view text) {
        int value = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
        return error == std::errc() && end == text.data() + text.size() && value > 0 ? value : 0;
    };
    if (words.size() < 2) { return std::nullopt; }
    if (words[0] == "speakers") {
        SpeakerList list;
        for (size_t i = 1; i < words.size(); ++i) {
            const auto speaker = speakerFromRaw(words[i]);
            if (!speaker) { return std::nullopt; }
            list.push_back(*speaker);
        }
        return SourceFormat::speakers(std::move(list));
    }
    const int count = number(words[1]);
    if (words[0] == "discrete" && words.size() == 2 && count > 0) { return SourceFormat::discrete(count); }
    const auto norm = words.size() == 3 ? ambiNormFromRaw(words[2]) : std::nullopt;
    if (words[0] == "ambisonic" && norm && count > 0 && count <= 3) { return SourceFormat::ambisonic(count, *norm); }
    return std::nullopt;
}

}  // namespace brindlehum
