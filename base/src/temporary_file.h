// TemporaryFile: the hidden file beside a target, created exclusively and locked.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "base/descriptor.h"

namespace brindlehum {

// Named after the target, so that the next writer of the same file finds a leftover. The name is cut to the length that
// the file system allows. A symbolic link of this name is never followed nor removed.
class TemporaryFile {
public:
    // `folder` is the target's folder and must outlive the object. With `wait`, waits while another writer holds the
    // file. Throws Error.
    TemporaryFile(const std::filesystem::path& target, int folder, mode_t mode, bool wait);
    // Removes the file, unless it was renamed.
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    // Removes the file of this name if it is a leftover of this user's: a regular file that nobody has locked, and that
    // nobody has written to for so many seconds. Does nothing else; never throws.
    static void removeDead(const std::string& name, int folder, int64_t idleSeconds);
    // Whether a file of this name is one of ours.
    static bool isName(std::string_view name);

    int number() const { return file_.number(); }
    // False when another process removed or replaced the file.
    bool holdsItsName() const;
    // Closes the file when it has the name. Returns 0, or the errno of a failure: EEXIST for a name that is taken and
    // may not be replaced.
    int rename(const std::string& name, bool replaces = true);

private:
    void create(mode_t mode);
    void clearLeftover();
    bool lock() const;
    [[noreturn]] void fail(int error) const;
    [[noreturn]] void failBusy() const;

    const std::filesystem::path& target_;
    const int folder_;
    const bool wait_;
    const std::string name_;
    Descriptor file_;
    bool renamed_ = false;
};

}  // namespace brindlehum
