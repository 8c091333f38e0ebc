// FileHandle: a regular file opened for reading, read at given offsets without moving any position.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <functional>
#include <memory>

#include "base/descriptor.h"

namespace brindlehum {

// Uses plain reads rather than a memory map: a file that shrinks while it is open causes short reads, not a signal.
class FileHandle {
public:
    // Throws Error when the path can't be opened or isn't a regular file; never waits on a pipe or a device.
    explicit FileHandle(const std::filesystem::path& path);
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;

    // The file's size in bytes and the time of its last change, as they were when it was opened.
    int64_t size() const { return size_; }
    const timespec& modified() const { return modified_; }
    int descriptor() const { return file_.number(); }
    // Returns the number of bytes read, fewer than requested at the end of the file; -1 on a read error. Serves small
    // reads near the start, of which header parsers make dozens, from one block read ahead.
    int64_t readAt(int64_t offset, void* out, size_t bytes) const;
    bool readExactly(int64_t offset, void* out, size_t bytes) const {
        return readAt(offset, out, bytes) == int64_t(bytes);
    }

private:
    int64_t readFromSystem(int64_t offset, void* out, size_t bytes) const;

    Descriptor file_;
    int64_t size_ = 0;
    timespec modified_{};
    mutable std::array<char, 2048> head_{};  // the start of the file; valid once headBytes_ is known
    mutable int64_t headBytes_ = -1;
};

// A position in an open file, for libraries that read through callbacks.
struct FileCursor {
    std::shared_ptr<FileHandle> handle;
    int64_t position = 0;
    bool failed = false;         // the system refused a read; the end of the file isn't a failure
    std::function<bool()> stop;  // optional; asked before each read, which fails once it returns true

    // Returns the number of bytes read, 0 at the end, -1 on failure.
    int64_t read(void* out, int64_t bytes);
    // Like lseek; -1 for a position before the start of the file.
    int64_t seek(int64_t offset, int whence);
};

}  // namespace brindlehum
