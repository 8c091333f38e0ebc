// ChangeLog: metadata edits on their way between the people who share a library folder.
//
// Each user on each machine appends to a file of their own, `ROOT/.brindlehum/changes/OWNER.jsonl`, one JSON object a
// line, and reads the files of the others from where it stopped. A file has one writer, so the shared folder needs
// no locks between machines; two processes of one owner take turns by a lock on the file. Any thread; blocking I/O.
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
    std::string user;               // the owner who made it
    std::chrono::sys_seconds time;  // for people to read; nothing compares it
    bool operator==(const Entry&) const = default;

    // One line, without its line feed; none when a text isn't UTF-8.
    std::optional<std::string> encoded() const;
    // None when the line isn't a whole entry. Unknown keys are ignored.
    static std::optional<Entry> decode(std::string_view line);
};

// This user on this machine, as "user@host".
std::string owner();
// The log of an owner, with "-" for any "/" in the name.
std::filesystem::path logFile(const std::filesystem::path& root, const std::string& owner);

// Adds the entry to the log of entry.user; drops it when that can't be written. First ends a line that a killed process
// left open, so that it doesn't spoil this one.
void append(const std::filesystem::path& root, const Entry& entry);

// Applies what the others' logs hold beyond what was read before, to the catalog alone; returns the number of entries
// applied. Skips for good: damaged lines, entries of files that aren't catalogued, and entries whose path isn't
// a plain path below the root (absolute, with "..", through a symbolic link). A last line without its line feed waits.
// A log that is shorter than what was read of it, or has another content there, was replaced: it is read from its
// start. `self` is the owner whose log is left out.
int pull(const std::filesystem::path& root, Catalog& catalog, const std::string& self = owner(),
         const std::stop_token& stop = {});

}  // namespace brindlehum::ChangeLog
