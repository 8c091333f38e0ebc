// DragExport: what a drag out of the player delivers.
#pragma once

#include <string>

namespace brindlehum {

// The rendered forms (beds, upmixes, binaural) join when the exporter lands.
enum class DragExport { original };

std::string id(DragExport mode);
std::string name(DragExport mode);

}  // namespace brindlehum
