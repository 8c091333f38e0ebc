// LibraryScanner: brings the catalog up to date with the files below one library root.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "base/path.h"
#include "library/catalog/catalog.h"

namespace brindlehum::LibraryScanner {

inline constexpr size_t batchFiles = 256;        // files a transaction
inline constexpr double mtimeTolerance = 0.001;  // seconds

struct Progress {
    enum class Phase : uint8_t { finding, reading, removing };
    Phase phase = Phase::finding;
    int64_t done = 0;   // files whose row is up to date
    int64_t found = 0;  // sound files found so far; all of them once the phase is past `finding`
    bool operator==(const Progress&) const = default;
};

struct Result {
    enum class Outcome : uint8_t {
        complete,
        cancelled,    // what was committed stays, the next scan does the rest
        unreachable,  // nothing was looked at or removed
    };
    Outcome outcome = Outcome::complete;
    int64_t found = 0;                   // sound files below the root
    int64_t read = 0;                    // of them new or changed, and catalogued now
    int64_t removed = 0;                 // rows of files that are gone
    bool writeFailed = false;            // the catalog couldn't take all of it; the next scan tries again
    std::optional<std::string> message;  // what the user should know: that, or why rows of files not seen were kept
};

struct Options {
    std::function<void(const Progress&)> progress = {};  // called on the scanning thread
    std::stop_token stop = {};
    std::vector<std::string> otherRoots = {};         // canonical: those below this root are left to their own scans
    std::filesystem::path mountTable = "/etc/fstab";  // what is mounted where, when it is there
};

// Runs on the caller's thread for as long as it takes; files are read by as many threads as there are cores, and
// written in transactions of batchFiles, between which searches get their turn. A file whose size and time are those
// of its row isn't opened. Hidden files and folders are left out, symbolic links aren't followed. (A folder is a
// folder here: nothing on this system passes a folder off as one file.) A file that can't be probed is catalogued by
// its name. Errors of single files and of the database are swallowed: the next scan finds the same difference again.
//
// Rows of files not seen are removed, but those below a folder that couldn't be read or is the empty mount point of a
// volume that isn't there; and none at all when the root can't be opened, has been exchanged meanwhile, or is as empty
// as such a mount point.
Result scan(const std::filesystem::path& root, Catalog& catalog, const Options& options = {});

}  // namespace brindlehum::LibraryScanner
