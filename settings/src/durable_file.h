// Whole-file replacement that survives a crash at any point: the old content or the new, never a part of it.
#pragma once

#include <filesystem>
#include <string>

namespace brindlehum {

// The folder of a file, opened and locked against other processes while this lives. Processes that can't lock
// (some network file systems) go on without.
class LockedFolder {
public:
    // Creates missing folders, private to the user.
    explicit LockedFolder(const std::filesystem::path& folder);
    ~LockedFolder();
    LockedFolder(const LockedFolder&) = delete;
    LockedFolder& operator=(const LockedFolder&) = delete;

    bool isOpen() const { return descriptor_ >= 0; }
    // Puts `text` in place of the file `name`, and syncs both. Keeps the mode of a file that stands there; a new one
    // belongs to the user alone. False, with the old file untouched, when any step fails.
    bool replace(const std::string& name, const std::string& text) const;
    // Puts a file aside under another name, over what may stand there.
    bool rename(const std::string& from, const std::string& to) const;

private:
    bool writeSynced(const std::string& name, const std::string& text, unsigned mode) const;
    int descriptor_ = -1;
};

}  // namespace brindlehum
