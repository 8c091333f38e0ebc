// ChangeLog: shares metadata edits between the people who use one library folder.
//
// Each user on each machine appends to one file, `ROOT/.brindlehum/changes/OWNER.jsonl`, one JSON object per line, and
// reads the others' files from where the last read stopped. A file has one writer, so the folder needs no locks between
// machines; two processes of one owner take turns by a lock on the file. Any thread; blocking I/O.
#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>

#include "library/catalog/catalog.h"
#include "library/meta/metadata_changes.h"

namespace brindlehum::ChangeLog {

struct Entry {
    std::string path;  // relative to the root
    MetadataChanges changes;
    std::string user;               // the owner who made the edit
    std::chrono::sys_seconds time;  // for people to read; never compared
    bool operator==(const Entry&) const = default;

    // The entry as one line, without its line feed; none when a text isn't UTF-8.
    std::optional<std::string> encoded() const;
    // None when the line isn't a complete entry. Ignores unknown keys.
    static std::optional<Entry> decode(std::string_view line);
};

// The user on this machine, as "user@host".
std::string owner();
// The path of an owner's log; any "/" in the name becomes "-".
std::filesystem::path logFile(const std::filesystem::path& root, const std::string& owner);

// Adds the entry to the log of entry.user; drops it if the log can't be written. First ends a line that a killed
// process left open, so that it doesn't spoil this one.
void append(const std::filesystem::path& root, const Entry& entry);

// Applies the new entries in the others' logs to the catalog only; returns the number applied. Permanently skips
// damaged lines, entries for files that aren't catalogued, and entries whose path isn't a plain path below the root
// (absolute, with "..", through a symbolic link). Leaves a last line without its line feed for the next call. If a log
// is shorter than what was read of it, or has other content there, it was replaced: reads it from its start. Leaves out
// the log of the owner `self`.
int pull(const std::filesystem::path& root, Catalog& catalog, const std::string& self = owner(),
         const std::stop_token& stop = {});

}  // namespace brindlehum::ChangeLog
