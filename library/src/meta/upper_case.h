// Upper case in any language, as used for the catalog's categories.
#pragma once

#include <string>
#include <string_view>

namespace brindlehum {

// UTF-8 in and out; "ß" becomes "SS". Any thread.
std::string upperCase(std::string_view text);

}  // namespace brindlehum
