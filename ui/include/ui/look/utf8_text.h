// textOf: names of the models as the texts of widgets.
#pragma once

#include <QString>
#include <string_view>

namespace brindlehum {

inline QString textOf(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), qsizetype(utf8.size()));
}

}  // namespace brindlehum
