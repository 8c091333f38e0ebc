// scan FOLDER: updates the catalog from a library root, and applies the team's change logs in it.
#include <chrono>
#include <iostream>
#include <stop_token>

#include "base/error.h"
#include "base/path.h"
#include "base/stored_path.h"
#include "command.h"
#include "interrupt.h"
#include "library/scan/library_scanner.h"
#include "library/team/change_log.h"
#include "library_words.h"

namespace brindlehum::cli {
namespace {

using LibraryScanner::Progress;
using Clock = std::chrono::steady_clock;

const char* wordFor(Progress::Phase phase) {
    switch (phase) {
        case Progress::Phase::finding:
            return "finding";
        case Progress::Phase::reading:
            return "reading";
        case Progress::Phase::removing:
            return "removing what is gone";
    }
    return "";
}

const char* rawValue(LibraryScanner::Result::Outcome outcome) {
    using Outcome = LibraryScanner::Result::Outcome;
    return outcome == Outcome::complete ? "complete" : outcome == Outcome::cancelled ? "cancelled" : "unreachable";
}

}  // namespace

bool scan(Words words) {
    const LibraryWords library = libraryWords(words);
    if (library.rest.size() != 1) {
        throw UsageError(library.rest.empty() ? "no folder given" : "one folder at a time");
    }
    const std::string root = canonicalPath(library.rest[0]);
    const auto catalog = library.open();

    // At most one line per second, so that a short scan prints nothing.
    auto told = Clock::now();
    std::stop_source ending;
    endAtInterrupt();
    LibraryScanner::Options options;
    options.stop = ending.get_token();
    options.otherRoots = library.roots;
    options.progress = [&](const Progress& now) {
        if (interrupted()) { ending.request_stop(); }
        if (Clock::now() - told < std::chrono::seconds(1)) { return; }
        told = Clock::now();
        std::cerr << wordFor(now.phase) << ": " << now.done << " of " << now.found << " files" << std::endl;
    };
    const auto start = Clock::now();
    const LibraryScanner::Result result = LibraryScanner::scan(root, *catalog, options);
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    if (result.outcome == LibraryScanner::Result::Outcome::unreachable) { throw Error(result.message.value_or(root)); }
    const bool cancelled = result.outcome == LibraryScanner::Result::Outcome::cancelled;
    print({
        {"root", storedPath(root)},
        {"outcome", rawValue(result.outcome)},
        {"found", result.found},
        {"read", result.read},
        {"removed", result.removed},
        {"applied", result.isWhole() ? ChangeLog::pull(root, *catalog) : 0},
        {"unread", result.unread},
        {"seconds", seconds},
        {"message", result.message ? Json(*result.message) : Json()},
    });
    const bool incomplete = result.writeFailed || result.unread > 0;
    if (incomplete) { printError(result.message.value_or(root)); }
    return !cancelled && !incomplete;
}

}  // namespace brindlehum::cli
