// DragExport: names, and what is offered for which source.
#include "mix/export/drag_export.h"

#include "upmix/upmix_planner.h"

namespace brindlehum {
namespace {

using Kind = DragExport::Kind;

constexpr std::string_view bedPrefix = "bed-";
constexpr std::string_view upmixPrefix = "upmix-";

std::vector<LayoutID> bedsFor(const SourceFormat& source) {
    using enum LayoutID;
    if (source.asAmbisonic()) { return {l916, l714, l712, l51, stereo}; }
    const SpeakerList* list = source.asSpeakers();
    return list && list->size() > 2 ? std::vector{l916, l714, l51, stereo} : std::vector<LayoutID>();
}

}  // namespace

std::string id(const DragExport& mode) {
    switch (mode.kind) {
        case Kind::original:
            return "original";
        case Kind::binaural:
            return "binaural";
        case Kind::bed:
            return std::string(bedPrefix).append(rawValue(mode.layout));
        case Kind::upmix:
            return std::string(upmixPrefix).append(rawValue(mode.layout));
    }
    return {};
}

std::optional<DragExport> dragExportFromId(std::string_view text) {
    if (text == id(DragExport::original())) { return DragExport::original(); }
    if (text == id(DragExport::binaural())) { return DragExport::binaural(); }
    for (const auto& [prefix, kind] : {std::pair(bedPrefix, Kind::bed), std::pair(upmixPrefix, Kind::upmix)}) {
        if (!text.starts_with(prefix)) { continue; }
        if (const auto layout = layoutFromRaw(text.substr(prefix.size()))) { return DragExport{kind, *layout}; }
    }
    return std::nullopt;
}

std::string name(const DragExport& mode) {
    switch (mode.kind) {
        case Kind::original:
            return "Original";
        case Kind::binaural:
            return "Binaural";
        case Kind::bed:
            if (mode.layout == LayoutID::stereo) { return "Stereo fold-down"; }
            return std::string(displayName(mode.layout)) + " bed";
        case Kind::upmix:
            return std::string(displayName(mode.layout)) + " upmix";
    }
    return {};
}

std::vector<DragExport> dragOptions(const std::optional<SourceFormat>& source, int channels, bool upmixes) {
    std::vector<DragExport> options = {DragExport::original()};
    if (!source) { return options; }
    const auto beds = bedsFor(*source);
    for (const LayoutID layout : beds) { options.push_back(DragExport::bed(layout)); }
    if (!beds.empty()) { options.push_back(DragExport::binaural()); }

    const SpeakerList* list = source->asSpeakers();
    if (!upmixes || !list || int(list->size()) != channels) { return options; }
    for (const LayoutID layout : {LayoutID::l916, LayoutID::l714, LayoutID::l51}) {
        if (UpmixPlanner::applies(*list, speakers(layout))) { options.push_back(DragExport::upmix(layout)); }
    }
    return options;
}

}  // namespace brindlehum
