// ChangeLog: shares metadata edits between the people who use one library folder.
//
// Each user on each machine appends to one file, `ROOT/.brindlehum/changes/OWNER.jsonl`, one JSON object per line, and
// reads all files there from where the last read stopped. A file has one writer, so the folder needs no locks between
// machines; two processes of one owner take turns by a lock on the file. Any thread; blocking I/O.
#pragma once

#include <filesystem>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>

#include "library/catalog/catalog.h"
#include "library/catalog/field_edit.h"
#include "library/meta/metadata_changes.h"

namespace brindlehum::ChangeLog {

struct Entry {
    std::string path;  // relative to the root
    MetadataChanges changes;
    std::string user;  // the owner who made the edit; for people to read
    EditTime time;
    // Whether the file itself got the changes. None in the logs of older versions.
    std::optional<bool> embedded = {};
    std::optional<std::string> from = {};  // the path before, relative to the root, if this is a rename
    bool operator==(const Entry&) const = default;

    // The entry as one line, without its line feed; none when a text isn't UTF-8.
    std::optional<std::string> encoded() const;
    // None when the line isn't a complete entry. Ignores unknown keys, and a rating beyond 0 to 5. Texts may hold any
    // characters.
    static std::optional<Entry> decode(std::string_view line);
};

// The time for a new edit. A time before 2000 or after 2099 comes from a clock that isn't set: it counts as the start
// of 2000, here and in lines that are read, so that no edit wins for a century.
EditTime now();

// The user on this machine (LogOwner); the same for as long as the process runs.
std::string owner();
// The path of an owner's log; any "/" in the name becomes "-".
std::filesystem::path logFile(const std::filesystem::path& root, const std::string& owner);

// Adds the entry to the log of entry.user. First ends a line that a killed process left open, so that it doesn't spoil
// this one. Throws Error when the entry isn't in the log then: the log can't be written or has a second name, another
// process holds its lock for more than lockSeconds, or the entry has no line that readers take.
void append(const std::filesystem::path& root, const Entry& entry);
inline constexpr int lockSeconds = 2;

// Appends all edits of this root that the owner's log doesn't have yet. Returns the reason if those of `path` still
// aren't in it; the next call tries again.
std::optional<std::string> send(const std::filesystem::path& root, Catalog& catalog, const std::string& owner,
                                const std::string& path = {});

// Sends what wasn't sent before, then merges the new entries of all logs into the catalog's edits, whether or not their
// files are catalogued yet, and brings the rows up to date. Returns the number of entries that changed something in
// logs that aren't `self`'s. An entry whose words are in the file makes us read the file, if it has changed; no file is
// written.
//
// Of two edits of a field, the later one counts; at equal times, that of the log with the greater name. A log's name
// says whose it is, not `user`. A copy or a second name of a log repeats its entries, which changes nothing. An entry
// is about the file of that path alone: another name of the same file keeps its own words.
//
// Skips for good: damaged lines, lines over 4 MiB, and paths that aren't plain paths below the root (absolute, with
// ".."). Doesn't follow symbolic links. Leaves a last line without its line feed for the next call. If a log is shorter
// than what was read of it, or has other content there, it was replaced: reads it from its start.
int pull(const std::filesystem::path& root, Catalog& catalog, const std::string& self = owner(),
         const std::stop_token& stop = {});

}  // namespace brindlehum::ChangeLog
