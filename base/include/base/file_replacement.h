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

class SourceClaim;
class TemporaryFile;

struct FileReplacementOptions {
    // Wait while another writer has the file; otherwise throw. For files that only this program's processes write.
    bool waits = false;
    mode_t mode = 0666;      // of the new file, reduced by the umask
    bool syncFolder = true;  // false: a crash of the system may bring the old file back after the commit
    // For a file that replaces none: the target's name is only the first to try. To be ended by commitNew().
    bool isNew = false;
};

// The target stays as it is until commit(). The object removes its temporary file `.<file name>.bh-tmp` beside the
// target when it is destroyed, and locks it until then: a second writer of the same file, in this process or another,
// is refused or waits. A dead process's leftover isn't locked, and is removed. Refuses a target that is write-protected
// or not a regular file. One thread at a time, blocking I/O; all calls throw Error when the system refuses.
class FileReplacement {
public:
    using Options = FileReplacementOptions;

    // The folder must exist, the file needn't. A symbolic link of this name is replaced, not followed.
    explicit FileReplacement(const std::filesystem::path& target, const Options& options = {});
    // Makes the next version of `source`, which is the opened target.
    FileReplacement(const std::filesystem::path& target, const FileHandle& source);
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    // Makes this the next version of `source`, the opened target, which must outlive the object: copy() reads from it,
    // and commit() copies its owner, permissions and extended attributes. This and commit() throw fileInUse if it has
    // changed since it was opened or isn't the target any more, and while another program writes to it or has locked
    // it; a writer that waits takes such a program for one of our own.
    void continueFrom(const FileHandle& source);

    // Reserves space for a file of this size, so that a disk that is too full fails before all the work.
    void reserve(uint64_t bytes);
    // Appends to the bytes written so far.
    void write(std::string_view bytes);
    // Writes anywhere: over earlier bytes, or beyond them.
    void writeAt(uint64_t offset, std::string_view bytes);
    // Appends a part of the source, which must be there in full.
    void copy(uint64_t offset, uint64_t bytes);
    // The new version so far, opened for reading.
    std::shared_ptr<FileHandle> written() const;
    // Reads what was written; throws when it isn't there in full.
    void readBack(uint64_t offset, char* out, size_t bytes) const;
    // The length of the new version so far; setLength() cuts it, or extends it with zeros.
    uint64_t length() const { return end_; }
    void setLength(uint64_t bytes);
    // For a writer that takes a ByteSink; must not outlive this object. Finishing the sink doesn't commit.
    std::unique_ptr<ByteSink> sink();

    // Syncs the new version and swaps it in. Returns its inode.
    ino_t commit();
    // The same for a new file, under any name in the target's folder. False when that name is taken: the caller may try
    // another.
    bool commitNew(const std::string& name);

    // Removes what crashes of this user's processes have left in a folder, for folders where no next writer of the same
    // file may come. What was written to within ten minutes stays, as does what can't be looked at.
    static void clearLeftovers(const std::filesystem::path& folder) noexcept;

    // Replaces a whole file in one call.
    static void writeText(const std::filesystem::path& target, std::string_view text, const Options& options = {});

private:
    class Sink;
    bool sourceIsUnchanged() const;
    void copyByHand(uint64_t offset, uint64_t bytes);
    void wrote(uint64_t end);
    void failIfInUse(const SourceClaim& claim) const;
    [[noreturn]] void fail(int error) const;
    [[noreturn]] void failChanged() const;

    const std::filesystem::path target_;
    const std::string name_;
    const bool waits_;
    const bool syncFolder_;
    const Descriptor folder_;
    std::unique_ptr<TemporaryFile> file_;
    const FileHandle* source_ = nullptr;
    uint64_t end_ = 0;       // length of the new version so far
    uint64_t passedOn_ = 0;  // bytes that the disk was told to write already, in parallel to the copying
};

}  // namespace brindlehum
