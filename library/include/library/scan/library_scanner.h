// LibraryScanner: brings the catalog up to date with the files below one library root.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

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
        cancelled,    // committed rows stay, the next scan does the rest
        unreachable,  // nothing was looked at or removed
    };
    Outcome outcome = Outcome::complete;
    int64_t found = 0;                   // sound files below the root
    int64_t read = 0;                    // of them new or changed, and catalogued now
    int64_t removed = 0;                 // rows of files that are gone
    bool writeFailed = false;            // the catalog couldn't take all of it; the next scan tries again
    std::optional<std::string> message;  // for the user: a failed write, or why rows of missing files were kept
};

struct Options {
    std::function<void(const Progress&)> progress = {};  // called on the scanning thread
    std::stop_token stop = {};
    std::vector<std::string> otherRoots = {};         // canonical; folders among them are left out of this scan
    std::filesystem::path mountTable = "/etc/fstab";  // the mount points and their volumes
};

// Runs on the caller's thread for as long as it takes; files are read by as many threads as there are cores, and
// written in transactions of batchFiles, so that searches run in between. A file isn't opened when its size and time
// are those of its row. Hidden files and folders are left out, symbolic links aren't followed. A file that can't be
// probed is catalogued by its name. Errors of single files and of the database are dropped, since the next scan finds
// the same difference again.
//
// Removes the rows of missing files, except below a folder that couldn't be read and below the empty mount point of a
// volume that isn't mounted. Removes none when the root can't be opened, was replaced during the scan, or holds
// nothing, like such a mount point.
Result scan(const std::filesystem::path& root, Catalog& catalog, const Options& options = {});

}  // namespace brindlehum::LibraryScanner
