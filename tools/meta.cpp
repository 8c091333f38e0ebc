// meta FILE [TAG=value...]: shows the metadata of a sound and edits it, saved as the browser saves it.
#include <algorithm>
#include <charconv>
#include <filesystem>

#include "base/error.h"
#include "base/path.h"
#include "base/text.h"
#include "command.h"
#include "format_json.h"
#include "library/meta/meta_io.h"
#include "library/team/change_log.h"
#include "library/team/metadata_save.h"
#include "library_words.h"

namespace brindlehum::cli {
namespace {

namespace fs = std::filesystem;

MetadataChanges changesOf(Words words) {
    MetadataChanges changes;
    for (const std::string& word : words) {
        const size_t equals = word.find('=');
        const std::string tag = word.substr(0, equals);
        if (equals == std::string::npos) { throw UsageError("\"" + word + "\" is no TAG=value"); }
        const std::string value = word.substr(equals + 1);
        if (repairUtf8(value) != value) { throw UsageError(tag + " isn't UTF-8"); }
        if (tag == "RATING") {
            int rating = 0;
            const auto read = std::from_chars(value.data(), value.data() + value.size(), rating);
            if (read.ec != std::errc() || read.ptr != value.data() + value.size() || rating < 0 || rating > 5) {
                throw UsageError("RATING can't be \"" + value + "\", but 0 to 5");
            }
            changes.rating = rating;
        } else if (SoundMeta::tag(tag) != nullptr) {
            changes.fields[tag] = value;
        } else {
            throw UsageError("unknown tag \"" + tag + "\"");
        }
    }
    return changes;
}

// The roots whose change logs record an edit of this file: the user's own roots, and the root under which a scan added
// the file to the catalog. A file outside of any library has only its own folder as root, which gets no log.
std::vector<std::string> rootsFor(const fs::path& file, const LibraryWords& library, Catalog& catalog) {
    std::vector<std::string> roots = library.roots;
    const std::string path = canonicalPath(file);
    if (const auto row = catalog.row(path)) {
        std::error_code error;
        const bool isRoot = row->root != fs::path(path).parent_path() || fs::exists(row->root + "/.brindlehum", error);
        if (isRoot) { roots.push_back(row->root); }
    }
    return roots;
}

// A file that holds its whole record may be newer than its row, and needs no catalog.
SoundMeta metaOf(const fs::path& file, const LibraryWords& library) {
    return MetadataSave::recordToEdit(file, library.openExisting().get());
}

}  // namespace

bool meta(Words words) {
    const LibraryWords library = libraryWords(words);
    if (library.rest.empty()) { throw UsageError("no file given"); }
    const fs::path file = library.rest[0];
    const MetadataChanges changes = changesOf(Words(library.rest).subspan(1));
    if (!fs::is_regular_file(file)) {
        throw Error(file.string() + (fs::exists(file) ? ": not a file" : ": no such file"));
    }
    if (changes.isEmpty()) {
        print(toJson(metaOf(file, library)));
        return true;
    }
    const auto catalog = library.open();
    const auto saved =
        MetadataSave::save(file, changes, catalog.get(), rootsFor(file, library, *catalog), ChangeLog::owner());
    print(toJson(metaOf(file, library)));
    const auto lack = saved.unindexed ? saved.unindexed : saved.unshared;
    if (lack) { printError(file.string() + ": saved, but " + *lack); }
    return !lack;
}

}  // namespace brindlehum::cli
