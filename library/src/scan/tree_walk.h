// Tree walk: lists every sound file below a folder with its size and time, at one look-up a file.
#pragma once

#include <functional>
#include <stop_token>
#include <string>
#include <vector>

#include "library/catalog/catalog.h"

namespace brindlehum {

struct TreeWalk {
    int openError = 0;                // of the folder itself; 0: it was walked
    bool anythingThere = false;       // it holds something to see, or a change log
    std::vector<std::string> unread;  // folders and files below it that exist but couldn't be read
    std::vector<std::string> empty;   // folders below it that hold nothing at all
    bool exchanged = false;           // the folder was replaced or removed during the walk
};

// Regular files with the extension of a sound, in the order of the file system. Hidden files and folders are left out,
// as are the folders in `leftOut`; symbolic links are not followed, so that no circle is possible.
TreeWalk walkTree(const std::string& root, const std::vector<std::string>& leftOut, const std::stop_token& stop,
                  const std::function<void(const std::string& path, const Catalog::Stamp& stamp)>& onFile);

}  // namespace brindlehum
