// Tree walk: lists every sound file below a folder with its size and time, at one look-up per file.
#pragma once

#include <functional>
#include <stop_token>
#include <string>
#include <vector>

#include "library/catalog/catalog.h"

namespace brindlehum {

struct TreeWalk {
    struct Unread {
        std::string path;
        int error = 0;  // errno
    };
    int openError = 0;               // for the folder itself; 0: it was walked
    bool anythingThere = false;      // it holds a visible item or a change log
    std::vector<Unread> unread;      // folders and files below it that exist but couldn't be read
    std::vector<std::string> empty;  // folders below it that hold nothing at all
    bool exchanged = false;          // the folder was replaced or removed during the walk
};

// Finds regular files with the extension of a sound, in the order of the file system. Leaves out hidden files and
// folders and the folders in `leftOut`; doesn't follow symbolic links, so that it can't run in circles. A "lost+found"
// that only the system may read isn't among the unread.
TreeWalk walkTree(const std::string& root, const std::vector<std::string>& leftOut, const std::stop_token& stop,
                  const std::function<void(const std::string& path, const Catalog::Stamp& stamp)>& onFile);

}  // namespace brindlehum
