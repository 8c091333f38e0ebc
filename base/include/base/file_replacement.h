// FileReplacement: a new version of a file, written beside it and swapped in when it is complete and on disk.
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "base/byte_sink.h"
#include "base/descriptor.h"
#include "base/file_handle.h"

namespace brindlehum {

class TemporaryFile;

struct FileReplacementOptions {
    bool waits = false;      // while another writer is at the file; else refused
    mode_t mode = 0666;      // of the new file, less the umask
    bool syncFolder = true;  // false: a crash of the system may bring the old file back after the commit
};

// Until commit() the target stays as it is, and the temporary file beside it, `.<file name>.bh-tmp`, is removed with
// the object. It is locked for as long: of two writers of one file the second is refused or waits, in this process or
// another. The leftover of a process that died is free, and gives way. A target that is write-protected or no regular
// file is refused. One thread at a time, blocking I/O; all calls throw Error for what the system refuses.
class FileReplacement {
public:
    using Options = FileReplacementOptions;

    // The folder must be there, the file needn't. A symbolic link of this name is replaced, not followed.
    explicit FileReplacement(const std::filesystem::path& target, const Options& options = {});
    // The next version of `source`, which is the target, opened.
    FileReplacement(const std::filesystem::path& target, const FileHandle& source);
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    // Makes this the next version of `source`, the target, opened, which outlives the object: copy() reads it, commit()
    // takes over its owner, permissions and extended attributes. Refused, as is the commit, once it has changed since
    // it was opened or isn't the target any more.
    void continueFrom(const FileHandle& source);

    // Takes the room for a file of this size at once, so that a disk that is too full is known before all the work.
    void reserve(uint64_t bytes);
    // Behind what was written so far.
    void write(std::string_view bytes);
    // Over what was written so far, or beyond.
    void writeAt(uint64_t offset, std::string_view bytes);
    // From the source; the part must be there in full.
    void copy(uint64_t offset, uint64_t bytes);
    // For a writer that takes a ByteSink, which lives no longer than this object. Finishing it doesn't commit.
    std::unique_ptr<ByteSink> sink();

    // Syncs and swaps. Returns the inode of the new version.
    ino_t commit();

    // A whole file in one go.
    static void writeText(const std::filesystem::path& target, std::string_view text, const Options& options = {});

private:
    class Sink;
    bool sourceIsUnchanged() const;
    void copyByHand(uint64_t offset, uint64_t bytes);
    void wrote(uint64_t end);
    [[noreturn]] void fail(int error) const;
    [[noreturn]] void failChanged() const;

    const std::filesystem::path target_;
    const std::string name_;
    const bool syncFolder_;
    const Descriptor folder_;
    std::unique_ptr<TemporaryFile> file_;
    const FileHandle* source_ = nullptr;
    uint64_t end_ = 0;       // of what was written
    uint64_t passedOn_ = 0;  // of those, bytes that the disk has been set to write, beside the copying
};

}  // namespace brindlehum
