// DragExport: the kinds of file in which a sound leaves the program.
#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "audio/speakers/source_format.h"

namespace brindlehum {

struct DragExport {
    enum class Kind : uint8_t { original, bed, upmix, binaural };

    Kind kind = Kind::original;
    LayoutID layout = LayoutID::stereo;  // of a bed or an upmix; stereo otherwise

    static constexpr DragExport original() { return {}; }
    static constexpr DragExport binaural() { return {Kind::binaural, LayoutID::stereo}; }
    static constexpr DragExport bed(LayoutID layout) { return {Kind::bed, layout}; }
    static constexpr DragExport upmix(LayoutID layout) { return {Kind::upmix, layout}; }

    auto operator<=>(const DragExport&) const = default;
};

// "original", "binaural", "bed-l714", "upmix-l916".
std::string id(const DragExport& mode);
std::optional<DragExport> dragExportFromId(std::string_view id);
// For menus: "Original", "Binaural", "Stereo fold-down", "7.1.4 bed", "9.1.6 upmix".
std::string name(const DragExport& mode);

// The forms that a sound of `channels` channels is offered in, the original first; only that without a source. Upmixes
// are among them only while the user has one switched on. Pure.
std::vector<DragExport> dragOptions(const std::optional<SourceFormat>& source, int channels, bool upmixes);

}  // namespace brindlehum

template <>
struct std::hash<brindlehum::DragExport> {
    size_t operator()(const brindlehum::DragExport& mode) const noexcept {
        return size_t(mode.kind) * brindlehum::allLayouts.size() + size_t(mode.layout);
    }
};
