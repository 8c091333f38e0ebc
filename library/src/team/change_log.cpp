// This user's own log: its name, appending to it, and sending what waits in the catalog.
#include "library/team/change_log.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <functional>
#include <thread>
#include <vector>

#include "base/descriptor.h"
#include "base/error.h"
#include "base/path.h"
#include "library/catalog/catalog_edits.h"
#include "library/team/log_owner.h"
#include "team/line_reader.h"

namespace brindlehum::ChangeLog {
namespace {

constexpr mode_t allModeBits = 07777;
constexpr mode_t everybodyReads = 0444;

bool endsInsideALine(int log) {
    struct stat facts {};
    char last = '\n';
    return ::fstat(log, &facts) == 0 && facts.st_size > 0 && ::pread(log, &last, 1, facts.st_size - 1) == 1 &&
           last != '\n';
}

// Makes the log's folders with the root's permissions, whatever the first user's umask, because every user of the root
// must be able to add a file there. False, with errno set, when one of them can't be made or is a link.
bool makeFolders(const std::filesystem::path& root, const std::filesystem::path& folder, mode_t mode) {
    struct stat facts {};
    if (folder == root) { return true; }
    if (!makeFolders(root, folder.parent_path(), mode)) { return false; }
    if (::mkdir(folder.c_str(), mode) == 0) {
        ::chmod(folder.c_str(), mode);
    } else if (errno != EEXIST) {
        return false;
    }
    if (::lstat(folder.c_str(), &facts) != 0) { return false; }
    errno = ENOTDIR;
    return S_ISDIR(facts.st_mode);
}

[[noreturn]] void fail(const std::string& reason) {
    throw Error("the team's log can't be written: " + reason);
}

std::string lineOf(const Entry& entry) {
    std::optional<std::string> line = entry.encoded();
    if (!line) { fail("a text isn't UTF-8"); }
    if (line->size() > LineReader::maxLineBytes) { fail("the text is too long"); }
    return std::move(*line);
}

// The log's lock ends with its descriptor. On a network file system that has no locks, goes on without one; at worst,
// two entries from this machine are then mixed up.
void lock(int log) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(lockSeconds);
    while (::flock(log, LOCK_EX | LOCK_NB) != 0) {
        if (errno == EINTR) { continue; }
        if (errno != EWOULDBLOCK) { return; }
        if (std::chrono::steady_clock::now() > deadline) { fail("another program has locked it"); }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

// In one write, so that a reader never sees two halves in the wrong order. What a full disk leaves of a line is ended
// by the next one, and skipped by readers.
void writeAll(int log, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(log, text.data(), text.size());
        if (written < 0 && errno == EINTR) { continue; }
        if (written <= 0) { fail(std::strerror(written < 0 ? errno : ENOSPC)); }
        text.remove_prefix(size_t(written));
    }
}

// Opens the log and makes it as readable as the root. Refuses a file with a second name, which may be another file of
// the user's that somebody linked here.
Descriptor openLog(const std::filesystem::path& file, mode_t rootMode) {
    Descriptor log(::open(file.c_str(), O_RDWR | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600));
    struct stat facts {};
    if (!log.isOpen() || ::fstat(log.number(), &facts) != 0) { fail(std::strerror(errno)); }
    if (!S_ISREG(facts.st_mode)) { fail("it isn't a file"); }
    if (facts.st_nlink > 1) { fail("the file has a second name"); }
    ::fchmod(log.number(), 0600 | (rootMode & everybodyReads));
    return log;
}

std::optional<std::string> failureOf(const std::function<void()>& call) {
    try {
        call();
    } catch (const std::exception& error) { return error.what(); }
    return std::nullopt;
}

// What waits to be sent, as entries with the times and paths that the catalog knows them by.
struct Waiting {
    Entry entry;
    std::string path;
};

std::vector<Waiting> waitingIn(const CatalogEdits& edits, const std::string& root, const std::string& owner) {
    const auto relative = [&](const std::string& path) { return path.substr(root.size() + (root == "/" ? 0 : 1)); };
    const auto entryFor = [&](const std::string& path, EditTime time) {
        Entry entry;
        entry.path = relative(path);
        entry.user = owner;
        entry.time = time;
        return entry;
    };
    const CatalogEdits::Unsent unsent = edits.unsent(root);
    std::vector<Waiting> all;
    for (const CatalogEdits::Rename& rename : unsent.renames) {
        Entry entry = entryFor(rename.to, rename.time);
        entry.from = relative(rename.from);
        all.push_back({std::move(entry), rename.to});
    }
    for (const auto& [path, fields] : unsent.edits) {
        Entry entry = entryFor(path, fields[0].time);
        entry.embedded = fields[0].embedded;
        for (const FieldEdit& edit : fields) {
            if (edit.field == FieldEdit::rating) {
                entry.changes.rating = std::stoi(edit.value);
            } else {
                entry.changes.fields[edit.field] = edit.value;
            }
        }
        all.push_back({std::move(entry), path});
    }
    return all;
}

}  // namespace

std::string owner() {
    static const std::string name = LogOwner::here().name();
    return name;
}

std::filesystem::path logFile(const std::filesystem::path& root, const std::string& owner) {
    std::string name = owner;
    std::ranges::replace(name, '/', '-');
    return std::filesystem::path(canonicalPath(root)) / ".brindlehum" / "changes" / (name + ".jsonl");
}

void append(const std::filesystem::path& root, const Entry& entry) {
    const std::string line = lineOf(entry);
    const std::filesystem::path file = logFile(root, entry.user);
    const std::string rootPath = canonicalPath(root);
    struct stat rootFacts {};
    if (::stat(rootPath.c_str(), &rootFacts) != 0 ||
        !makeFolders(rootPath, file.parent_path(), rootFacts.st_mode & allModeBits)) {
        fail(std::strerror(errno));
    }
    const Descriptor log = openLog(file, rootFacts.st_mode);
    lock(log.number());
    writeAll(log.number(), (endsInsideALine(log.number()) ? "\n" : "") + line + "\n");
    ::flock(log.number(), LOCK_UN);
    if (::fdatasync(log.number()) != 0 && errno != EINVAL) { fail(std::strerror(errno)); }
}

std::optional<std::string> send(const std::filesystem::path& root, Catalog& catalog, const std::string& owner,
                                const std::string& path) {
    const std::string rootPath = canonicalPath(root);
    CatalogEdits edits(catalog);
    const auto waiting = waitingIn(edits, rootPath, owner);
    std::vector<const Waiting*> sent;
    std::optional<std::string> logFailure;
    std::optional<std::string> unshared;
    for (const auto& each : waiting) {
        auto failure = failureOf([&] { lineOf(each.entry); });
        if (!failure) {
            // Once the log has failed, the others would fail, too.
            if (!logFailure) {
                logFailure = failureOf([&] { append(root, each.entry); });
            }
            failure = logFailure;
        }
        if (!failure) { sent.push_back(&each); }
        if (failure && each.path == path) { unshared = failure; }
    }
    if (sent.empty()) { return unshared; }
    // If this fails, the next call sends them again, which changes nothing for readers.
    failureOf([&] {
        catalog.write([&] {
            for (const auto* each : sent) { edits.setUnsent(each->path, each->entry.time, false); }
        });
    });
    return unshared;
}

}  // namespace brindlehum::ChangeLog
