// ChangeLog: metadata edits on their way between the people who share a library folder.
//
// Each user on each machine appends to a file of their own, `ROOT/.brindlehum/changes/OWNER.jsonl`, one JSON object a
// line, and reads the files of the others from where it stopped. Nobody else writes a file, so the shared folder needs
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
    // None for what isn't a whole entry. Keys that aren't known are passed over.
    static std::optional<Entry> decode(std::string_view line);
};

// This user on this machine, as "user@host".
std::string owner();
// The log of an owner: in its name "/" stands as "-".
std::filesystem::path logFile(const std::filesystem::path& root, const std::string& owner);

// Adds the entry to the log of entry.user. What can't be written is dropped; a line that a process was killed over is
// closed first, so that it spoils nothing that follows.
void append(const std::filesystem::path& root, const Entry& entry);

// Applies what the others' logs hold beyond what was read before, to the catalog alone; gives the number of entries
// applied. Passed over for good: damaged lines, entries of files that aren't catalogued, and entries whose path isn't
// a plain path below the root (absolute, with "..", through a symbolic link). A last line without its line feed waits.
// A log that is shorter than what was read of it, or has another content there, was replaced: it is read anew.
// `self` is the owner whose log is left out.
int pull(const std::filesystem::path& root, Catalog& catalog, const std::string& self = owner(),
         const std::stop_token& stop = {});

}  // namespace brindlehum::ChangeLog
