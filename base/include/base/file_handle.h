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

// Plain reads rather than a memory map: a file that shrinks while it is open gives short reads, not a signal.
class FileHandle {
public:
    // Throws Error when the path can't be opened or isn't a regular file; never waits on a pipe or a device.
    explicit FileHandle(const std::filesystem::path& path);
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;

    // When it was opened: its size in bytes, and the time of its last change.
    int64_t size() const { return size_; }
    const timespec& modified() const { return modified_; }
    int descriptor() const { return file_.number(); }
    // Bytes read, fewer than asked at the end of the file; -1 on a read error. Small reads near the start, which header
    // parsers make by the dozen, come from one block read ahead.
    int64_t readAt(int64_t offset, void* out, size_t bytes) const;
    bool readExactly(int64_t offset, void* out, size_t bytes) const {
        return readAt(offset, out, bytes) == int64_t(bytes);
    }

private:
    int64_t readFromSystem(int64_t offset, void* out, size_t bytes) const;

    Descriptor file_;
    int64_t size_ = 0;
    timespec modified_{};
    mutable std::array<char, 2048> head_{};  // the start of the file, once headBytes_ is known
    mutable int64_t headBytes_ = -1;
};

// A position in an open file, for libraries that read through callbacks.
struct FileCursor {
    std::shared_ptr<FileHandle> handle;
    int64_t position = 0;
    bool failed = false;         // the system refused a read; the end of the file is no refusal
    std::function<bool()> stop;  // if any: asked before each read, which fails once it says true

    // Bytes read, 0 at the end, -1 on failure.
    int64_t read(void* out, int64_t bytes);
    // As lseek; -1 before the start of the file.
    int64_t seek(int64_t offset, int whence);
};

}  // namespace brindlehum
