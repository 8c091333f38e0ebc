// The list of keys under Help.
#pragma once

#include <QString>

class QWidget;

namespace brindlehum {

// Shows it until it is closed; the window stays usable meanwhile.
void showKeyList(QWidget& parent);
// The same as a page of the manual.
QString keyListMarkdown();

}  // namespace brindlehum
