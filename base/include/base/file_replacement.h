// FileReplacement: a new version of a file, written beside it and swapped in when it is complete and on disk.
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

#include "base/file_handle.h"

namespace brindlehum {

// The file behind all symbolic links. Throws Error.
std::filesystem::path followed(const std::filesystem::path& path);

// Until commit() the target stays as it is, and the temporary file beside it, `.<file name>.bh-tmp`, is removed with
// the object. It is locked for as long: of two writers of one file the second is refused, be it in another process,
// while the leftover of a process that died is free and gives way. All calls throw Error for what the system refuses.
class FileReplacement {
public:
    // `source` is the target, opened, and outlives the object. A target that may not be written is refused, though
    // its folder would allow the swap.
    FileReplacement(const std::filesystem::path& target, const FileHandle& source);
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    // Takes the room for a file of this size at once, so that a disk that is too full tells before all the work.
    void reserve(uint64_t bytes);
    void write(std::string_view bytes);
    // From the source; the part must be there in full.
    void copy(uint64_t offset, uint64_t bytes);
    // Owner, permissions and extended attributes of the source, then the swap. Refused when the source has changed or
    // isn't the target any more. Gives the inode of the new version.
    ino_t commit();

private:
    void createTemporary();
    void clearLeftover();
    bool holdsItsName() const;
    bool sourceIsUnchanged() const;
    void copyByHand(uint64_t offset, uint64_t bytes);
    void passOn(size_t bytes);
    void discard();
    [[noreturn]] void fail(int error) const;
    [[noreturn]] void failChanged() const;

    const std::filesystem::path target_;
    const std::string name_;
    const std::string temporary_;
    const FileHandle& source_;
    int folder_ = -1;
    int file_ = -1;
    int64_t written_ = 0;
    int64_t passedOn_ = 0;  // of those, bytes that the disk has been set to write, beside the copying
    bool made_ = false;     // the temporary file is ours to remove
    struct stat before_ {};
};

}  // namespace brindlehum
