#include "meta/upper_case.h"

#include <QString>
#include <algorithm>

namespace brindlehum {

std::string upperCase(std::string_view text) {
    const bool ascii = std::ranges::all_of(text, [](char c) { return (c & 0x80) == 0; });
    if (!ascii) { return QString::fromUtf8(text.data(), qsizetype(text.size())).toUpper().toStdString(); }
    std::string upper(text);
    for (char& c : upper) {
        if (c >= 'a' && c <= 'z') { c = char(c - 'a' + 'A'); }
    }
    return upper;
}

}  // namespace brindlehum
