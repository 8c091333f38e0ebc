// The system's fixed-width font in a given size.
#include "ui/look/tabular_font.h"

#include <QFontDatabase>

namespace brindlehum {

QFont tabularFont(double pointSize) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(pointSize);
    return font;
}

}  // namespace brindlehum
