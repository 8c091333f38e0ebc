// TagStream: the file that TagLib reads or edits.
#pragma once

#include <taglib/tiostream.h>

#include <exception>
#include <functional>

#include "base/file_handle.h"
#include "base/file_replacement.h"

namespace brindlehum {

// TagLib reports no failed reads and writes: this stream keeps the first one and does nothing from then on.
class TagStream : public TagLib::IOStream {
public:
    // For reading. Once `stop` returns true, the file seems to end. Both must outlive the object.
    TagStream(const FileHandle& file, std::function<bool()> stop);
    // For editing the new version of a file, which must outlive the object.
    explicit TagStream(FileReplacement& file) : edited_(&file) {}

    // Throws what the first failed call threw.
    void rethrow() const;

    TagLib::FileName name() const override { return ""; }
    TagLib::ByteVector readBlock(unsigned long bytes) override;
    void writeBlock(const TagLib::ByteVector& data) override;
    void insert(const TagLib::ByteVector& data, unsigned long start, unsigned long replace) override;
    void removeBlock(unsigned long start, unsigned long bytes) override;
    bool readOnly() const override { return edited_ == nullptr; }
    bool isOpen() const override { return true; }
    void seek(long offset, Position from) override;
    long tell() const override { return position_; }
    long length() override;
    void truncate(long bytes) override;

private:
    void attempt(const std::function<void()>& job);
    void move(uint64_t from, uint64_t to, uint64_t bytes);

    const FileHandle* read_ = nullptr;
    FileReplacement* edited_ = nullptr;
    std::function<bool()> stop_;
    long position_ = 0;
    std::exception_ptr failure_;
};

}  // namespace brindlehum
