// The list of keys under Help.
#pragma once

class QWidget;

namespace brindlehum {

// Shows it until it is closed; the window stays usable meanwhile.
void showKeyList(QWidget& parent);

}  // namespace brindlehum
