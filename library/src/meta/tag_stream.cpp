// TagStream: reads from a FileHandle, or edits a FileReplacement.
#include "meta/tag_stream.h"

#include <algorithm>
#include <memory>

#include "base/error.h"

namespace brindlehum {

TagStream::TagStream(const FileHandle& file, std::function<bool()> stop) : read_(&file), stop_(std::move(stop)) {}

void TagStream::rethrow() const {
    if (failure_) { std::rethrow_exception(failure_); }
}

void TagStream::attempt(const std::function<void()>& job) {
    if (failure_ || edited_ == nullptr) { return; }
    try {
        job();
    } catch (...) { failure_ = std::current_exception(); }
}

long TagStream::length() {
    return edited_ != nullptr ? long(edited_->length()) : long(read_->size());
}

void TagStream::seek(long offset, Position from) {
    position_ = std::max(0L, offset + (from == Current ? position_ : from == End ? length() : 0));
}

TagLib::ByteVector TagStream::readBlock(unsigned long bytes) {
    if (failure_ || (stop_ && stop_())) { return {}; }
    const long room = std::max(0L, length() - position_);
    TagLib::ByteVector data(unsigned(std::min<unsigned long>(bytes, static_cast<unsigned long>(room))), '\0');
    if (edited_ != nullptr) {
        attempt([&] { edited_->readBack(uint64_t(position_), data.data(), data.size()); });
        if (failure_) { return {}; }
    } else {
        const int64_t got = read_->readAt(position_, data.data(), data.size());
        if (got < 0) { failure_ = std::make_exception_ptr(Error("The file can't be read")); }
        data.resize(unsigned(std::max<int64_t>(0, got)));
    }
    position_ += long(data.size());
    return data;
}

void TagStream::writeBlock(const TagLib::ByteVector& data) {
    attempt([&] { edited_->writeAt(uint64_t(position_), {data.data(), data.size()}); });
    position_ += long(data.size());
}

// The places may overlap.
void TagStream::move(uint64_t from, uint64_t to, uint64_t bytes) {
    constexpr uint64_t stepBytes = 1 << 20;
    const auto buffer = std::make_unique<char[]>(size_t(std::min(bytes, stepBytes)));
    for (uint64_t done = 0; done < bytes;) {
        const uint64_t step = std::min(stepBytes, bytes - done);
        const uint64_t at = to > from ? bytes - done - step : done;
        edited_->readBack(from + at, buffer.get(), size_t(step));
        edited_->writeAt(to + at, {buffer.get(), size_t(step)});
        done += step;
    }
}

void TagStream::insert(const TagLib::ByteVector& data, unsigned long start, unsigned long replace) {
    attempt([&] {
        const uint64_t end = edited_->length();
        const uint64_t tail = std::min<uint64_t>(end, start + replace);
        const uint64_t behind = start + data.size();
        if (behind != tail) { move(tail, behind, end - tail); }
        edited_->writeAt(start, {data.data(), data.size()});
        if (behind < tail) { edited_->setLength(end - (tail - behind)); }
        position_ = long(behind);
    });
}

void TagStream::removeBlock(unsigned long start, unsigned long bytes) {
    insert({}, start, bytes);
}

void TagStream::truncate(long bytes) {
    attempt([&] { edited_->setLength(uint64_t(bytes)); });
}

}  // namespace brindlehum
