// Finds each file's UCS name, and what keeps the file from getting it.
#include "library/model/ucs_rename.h"

#include <unistd.h>

#include <climits>
#include <set>

#include "base/path.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;
using Verdict = UCSRename::Verdict;

// Also true for a link whose target is gone: it holds the name, too.
bool isTaken(const fs::path& path) {
    std::error_code error;
    return fs::exists(fs::symlink_status(path, error));
}

// `given` are the names that earlier files of the list get.
UCSRename plan(const fs::path& file, Catalog& catalog, const std::set<fs::path>& given) {
    if (!isTaken(file)) { return {file, {}, Verdict::gone}; }
    const auto row = catalog.row(canonicalPath(file));
    if (!row) { return {file, {}, Verdict::notInLibrary}; }
    const auto name = row->meta.ucsFileName();
    if (!name) { return {file, {}, row->meta.catID.empty() ? Verdict::noCatID : Verdict::noFXName}; }
    UCSRename rename{file, file.parent_path() / (*name + file.extension().string()), Verdict::renames};
    if (rename.to == file) {
        rename.verdict = Verdict::alreadyNamed;
    } else if (rename.to.filename().native().size() > NAME_MAX) {
        rename.verdict = Verdict::nameTooLong;
    } else if (given.contains(rename.to)) {
        rename.verdict = Verdict::nameTwice;
    } else if (isTaken(rename.to)) {
        rename.verdict = Verdict::nameTaken;
    } else if (::access(file.parent_path().c_str(), W_OK) != 0) {
        rename.verdict = Verdict::folderLocked;
    }
    return rename;
}

}  // namespace

UCSRenames planUCSRenames(const std::vector<fs::path>& files, Catalog& catalog) {
    UCSRenames renames;
    std::set<fs::path> given;
    for (const fs::path& file : files) {
        renames.push_back(plan(file, catalog, given));
        if (renames.back().verdict == Verdict::renames) { given.insert(renames.back().to); }
    }
    return renames;
}

}  // namespace brindlehum
