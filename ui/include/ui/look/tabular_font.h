// The font of numbers that change in place: its digits are equally wide, so that nothing moves.
#pragma once

#include <QFont>

namespace brindlehum {

QFont tabularFont(double pointSize);

}  // namespace brindlehum
