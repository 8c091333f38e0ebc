#include "mix/player/drag_export.h"

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

}  // namespace brindlehum
