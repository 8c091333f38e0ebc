// UCSRename: what a rename to its UCS name would do with a file, to be shown before anything happens.
#pragma once

#include <filesystem>
#include <vector>

#include "library/catalog/catalog.h"

namespace brindlehum {

struct UCSRename {
    enum class Verdict {
        renames,
        alreadyNamed,
        // These files keep their names:
        gone,
        notInLibrary,  // the catalog holds no metadata of it
        noCatID,
        noFXName,
        nameTaken,  // by another file in its folder
        nameTwice,  // an earlier file of the list gets it
        nameTooLong,
        folderLocked,  // nothing may be renamed in it
    };
    std::filesystem::path from;
    std::filesystem::path to;  // empty where the metadata gives no name
    Verdict verdict = Verdict::renames;
};
using UCSRenames = std::vector<UCSRename>;

// One entry a file, in the order given. Reads the catalog and the files' folders, and changes nothing.
UCSRenames planUCSRenames(const std::vector<std::filesystem::path>& files, Catalog& catalog);

}  // namespace brindlehum
