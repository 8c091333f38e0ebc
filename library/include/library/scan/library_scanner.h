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

inline constexpr size_t batchFiles = 256;  // files per transaction

struct Progress {
    enum class Phase : uint8_t { finding, reading, removing };
    Phase phase = Phase::finding;
    int64_t done = 0;   // files whose row is up to date
    int64_t found = 0;  // sound files found so far; the final count after the phase `finding`
    bool operator==(const Progress&) const = default;
};

struct Result {
    enum class Outcome : uint8_t {
        complete,
        cancelled,    // committed rows stay; the next scan does the rest
        unreachable,  // nothing was read or removed
    };
    Outcome outcome = Outcome::complete;
    int64_t found = 0;                   // sound files below the root
    int64_t read = 0;                    // of these, new or changed ones that were catalogued now
    int64_t removed = 0;                 // rows of files that are gone
    bool writeFailed = false;            // some rows couldn't be written; the next scan tries again
    int64_t unread = 0;                  // folders, and files, that exist and couldn't be read
    std::optional<std::string> message;  // for the user: a failed write, what couldn't be read, or why rows were kept
    // The catalog has a row for each file that was found.
    bool isWhole() const { return outcome == Outcome::complete && !writeFailed; }
};

struct Options {
    std::function<void(const Progress&)> progress = {};  // called on the scanning thread
    std::stop_token stop = {};
    std::vector<std::string> otherRoots = {};         // canonical; this scan leaves out those below its root
    std::filesystem::path mountTable = "/etc/fstab";  // the mount points and their volumes
};

// Runs on the caller's thread until done. Reads files on as many threads as there are cores, and writes in transactions
// of batchFiles, so that searches can run in between. Doesn't open files that match their rows in size and time. Leaves
// out hidden files and folders, and doesn't follow symbolic links. Catalogues a file that can't be probed by its name.
// Ignores errors of single files and of the database, since the next scan finds the same differences.
//
// Removes the rows of missing files, except below a folder that couldn't be read and below the empty mount point of a
// volume that isn't mounted. Removes none when the root can't be opened, was replaced during the scan, or is empty, as
// such a mount point is.
Result scan(const std::filesystem::path& root, Catalog& catalog, const Options& options = {});

}  // namespace brindlehum::LibraryScanner
