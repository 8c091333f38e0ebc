// Upper case: a fast path for ASCII, Qt's tables for the rest.
#include "meta/upper_case.h"

#include <QString>
#include <algorithm>

#include "base/text.h"

namespace brindlehum {

std::string upperCase(std::string_view text) {
    const bool ascii = std::ranges::all_of(text, [](char c) { return (c & 0x80) == 0; });
    if (ascii) { return upperAscii(text); }
    return QString::fromUtf8(text.data(), qsizetype(text.size())).toUpper().toStdString();
}

}  // namespace brindlehum
