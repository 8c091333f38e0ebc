// DragExport: the names of its kinds, and the file that a drag hands over.
#include "mix/player/drag_export.h"

#include <algorithm>

#include "base/path.h"

namespace brindlehum {

std::string id(DragExport mode) {
    switch (mode) {
        case DragExport::original:
            return "original";
    }
    return {};
}

std::string name(DragExport mode) {
    switch (mode) {
        case DragExport::original:
            return "Original";
    }
    return {};
}

void DragOut::setDragExport(DragExport mode) {
    if (mode == mode_) { return; }
    mode_ = mode;
    Q_EMIT changed();
}

void DragOut::checkDragExport() {
    const auto options = dragOptions();
    if (std::ranges::find(options, mode_) == options.end()) { setDragExport(DragExport::original); }
}

std::optional<std::filesystem::path> DragOut::exportForDrag(bool selectionOnly) {
    const auto& info = sound_.info();
    if (!info) { return std::nullopt; }
    if (selectionOnly && transport_.selection()) {
        message_.fail("Dragging a selection isn't available yet");
        return std::nullopt;
    }
    std::error_code error;
    if (!std::filesystem::is_regular_file(info->url, error)) {
        message_.fail("Can't read " + printableName(info->url) + ": " +
                      (error ? error.message() : "it isn't a regular file"));
        return std::nullopt;
    }
    return info->url;
}

}  // namespace brindlehum
