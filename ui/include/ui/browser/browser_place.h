// BrowserPlace: where the browser's rows come from, a folder or a search; another place is another list.
#pragma once

#include <string>

namespace brindlehum {

struct BrowserPlace {
    bool searching = false;
    std::string where;  // the folder's path, or the query and the filters
    bool operator==(const BrowserPlace&) const = default;
};

}  // namespace brindlehum
