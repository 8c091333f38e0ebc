// ExportName: composes the parts, and makes them fit for any disk.
#include "mix/export/export_name.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "base/number_text.h"
#include "base/text.h"

namespace brindlehum::ExportName {
namespace {

constexpr size_t longestName = 255;  // bytes, of most file systems
constexpr std::string_view extension = ".wav";

std::string_view tag(LayoutID layout) {
    switch (layout) {
        case LayoutID::stereo:
            return "st";
        case LayoutID::l51:
            return "51";
        case LayoutID::l71:
            return "71";
        case LayoutID::l514:
            return "514";
        case LayoutID::l712:
            return "712";
        case LayoutID::l714:
            return "714";
        case LayoutID::l916:
            return "916";
    }
    return {};
}

std::string formOf(const Exporter::Request& request) {
    const std::string layout = std::string("_").append(tag(request.mode.layout));
    switch (request.mode.kind) {
        case DragExport::Kind::original:
            if (request.listen == ListenMode::normal) { return {}; }
            return std::string("_").append(rawValue(request.listen));
        case DragExport::Kind::binaural:
            return "_bin";
        case DragExport::Kind::bed:
            return layout;
        case DragExport::Kind::upmix:
            return layout + "up-" + lowerAscii(request.upmixName);
    }
    return {};
}

std::string rangeOf(const Exporter::Request& request) {
    if (!request.range) { return {}; }
    const auto seconds = [&](int64_t frame) { return fixed(double(frame) / request.info.sampleRate, 3); };
    return std::string("_").append(seconds(request.range->lower)).append("-").append(seconds(request.range->upper)) +
           "s";
}

// A pull must open on every machine of a team, so bytes that are no UTF-8 and characters that Windows refuses in a name
// become hyphens.
std::string portable(std::string_view name) {
    constexpr std::string_view refused = "/\\:*?\"<>|\x7F";
    std::string out;
    for (size_t at = 0; at < name.size();) {
        const size_t length = characterLength(name.substr(at));
        const bool fits = length > 1 || (length == 1 && uint8_t(name[at]) >= 0x20 &&
                                         refused.find(name[at]) == std::string_view::npos);
        out += fits ? name.substr(at, length) : "-";
        at += std::max<size_t>(length, 1);
    }
    return out;
}

// Cuts `stem`, so that all of `end` fits behind it.
std::string within(std::string_view stem, std::string_view end) {
    return std::string(cutUtf8(stem, longestName - std::min(longestName, end.size()))).append(end);
}

}  // namespace

std::string fileName(const Exporter::Request& request) {
    const std::string end = portable(rangeOf(request) + formOf(request)).append(extension);
    const char* made = request.edited ? " edit" : "";
    return within(portable(request.info.url.stem().string() + made), end);
}

std::string numbered(const std::string& fileName, int number) {
    if (number <= 1) { return fileName; }
    const std::string_view stem = std::string_view(fileName).substr(0, fileName.size() - extension.size());
    return within(stem, std::string(" ").append(std::to_string(number)).append(extension));
}

std::string day(std::time_t time) {
    std::tm local{};
    localtime_r(&time, &local);
    std::string text(16, '\0');
    text.resize(std::strftime(text.data(), text.size(), "%Y-%m-%d", &local));
    return text;
}

}  // namespace brindlehum::ExportName
