// Upper case of any language's letters, as the catalog's categories stand.
#pragma once

#include <string>
#include <string_view>

namespace brindlehum {

// UTF-8 in and out; "ß" becomes "SS". Any thread.
std::string upperCase(std::string_view text);

}  // namespace brindlehum
