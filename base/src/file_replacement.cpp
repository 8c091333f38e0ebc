// FileReplacement: lock, write, sync, swap.
#include "base/file_replacement.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>

#include "base/error.h"
#include "base/path.h"
#include "file_attributes.h"
#include "source_claim.h"
#include "temporary_file.h"

namespace brindlehum {

namespace {

constexpr size_t stepBytes = 4 << 20;

int openFolder(const std::filesystem::path& target) {
    const std::filesystem::path folder = target.parent_path();
    return ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

// World-readable if the source is, so that any reader can lock and clear a leftover temporary.
mode_t temporaryMode(const FileHandle& source) {
    struct stat status {};
    const bool readable = ::fstat(source.descriptor(), &status) == 0 && (status.st_mode & S_IROTH) != 0;
    return readable ? 0644 : 0600;
}

}  // namespace

FileReplacement::FileReplacement(const std::filesystem::path& target, const Options& options)
    : target_(target),
      name_(target.filename().string()),
      waits_(options.waits),
      syncFolder_(options.syncFolder),
      folder_(openFolder(target)) {
    if (!folder_.isOpen()) { fail(errno); }
    struct stat old {};
    const auto isThere = [&] {
        return ::fstatat(folder_.number(), name_.c_str(), &old, AT_SYMLINK_NOFOLLOW) == 0 && !S_ISLNK(old.st_mode);
    };
    if (!options.isNew && isThere()) {
        if (S_ISDIR(old.st_mode)) { fail(EISDIR); }
        if (!S_ISREG(old.st_mode)) { throw Error(writeFailure(target_, "it isn't a regular file")); }
        if (::faccessat(folder_.number(), name_.c_str(), W_OK, AT_EACCESS) != 0) { fail(errno); }
    }
    file_ = std::make_unique<TemporaryFile>(target_, folder_.number(), options.mode, options.waits);
}

FileReplacement::FileReplacement(const std::filesystem::path& target, const FileHandle& source)
    : FileReplacement(target, Options{.mode = temporaryMode(source)}) {
    continueFrom(source);
}

FileReplacement::~FileReplacement() = default;

void FileReplacement::continueFrom(const FileHandle& source) {
    source_ = &source;
    if (!waits_) { failIfInUse(SourceClaim(source.descriptor())); }
    if (!sourceIsUnchanged()) { failChanged(); }
}

bool FileReplacement::sourceIsUnchanged() const {
    struct stat named {};
    struct stat open {};
    if (::fstatat(folder_.number(), name_.c_str(), &named, AT_SYMLINK_NOFOLLOW) != 0) { return false; }
    if (::fstat(source_->descriptor(), &open) != 0) { return false; }
    if (named.st_dev != open.st_dev || named.st_ino != open.st_ino) { return false; }
    const timespec& then = source_->modified();
    return open.st_size == source_->size() && open.st_mtim.tv_sec == then.tv_sec &&
           open.st_mtim.tv_nsec == then.tv_nsec;
}

void FileReplacement::reserve(uint64_t bytes) {
    // Where the file system can't reserve space, the writes report a full disk themselves.
    if (::fallocate(file_->number(), 0, 0, off_t(bytes)) != 0 && errno == ENOSPC) { fail(errno); }
}

void FileReplacement::write(std::string_view bytes) {
    writeAt(end_, bytes);
}

void FileReplacement::writeAt(uint64_t offset, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::pwrite(file_->number(), bytes.data(), bytes.size(), off_t(offset));
        if (written < 0 && errno == EINTR) { continue; }
        if (written <= 0) { fail(written < 0 ? errno : ENOSPC); }
        bytes.remove_prefix(size_t(written));
        offset += uint64_t(written);
        wrote(offset);
    }
}

void FileReplacement::wrote(uint64_t end) {
    constexpr uint64_t portion = 16 << 20;
    end_ = std::max(end_, end);
    if (end_ - passedOn_ < portion) { return; }
    // This is only a hint; the sync at the end guarantees the result.
    ::sync_file_range(file_->number(), off64_t(passedOn_), off64_t(end_ - passedOn_), SYNC_FILE_RANGE_WRITE);
    passedOn_ = end_;
}

void FileReplacement::copy(uint64_t offset, uint64_t bytes) {
    // Copies in the kernel, which avoids a pass through memory. Some file systems can't, or only report 0 copied bytes.
    auto from = off64_t(offset);
    while (bytes > 0) {
        auto to = off64_t(end_);
        const size_t step = size_t(std::min<uint64_t>(bytes, stepBytes));
        const ssize_t copied = ::copy_file_range(source_->descriptor(), &from, file_->number(), &to, step, 0);
        if (copied < 0 && errno == EINTR) { continue; }
        if (copied <= 0) { return copyByHand(uint64_t(from), bytes); }
        bytes -= uint64_t(copied);
        wrote(uint64_t(to));
    }
}

void FileReplacement::copyByHand(uint64_t offset, uint64_t bytes) {
    const size_t most = size_t(std::min<uint64_t>(bytes, stepBytes));
    const auto buffer = std::make_unique<char[]>(most);
    while (bytes > 0) {
        const size_t step = size_t(std::min<uint64_t>(bytes, most));
        const int64_t got = source_->readAt(int64_t(offset), buffer.get(), step);
        if (got < 0) { fail(errno); }
        if (size_t(got) < step) { failChanged(); }
        write({buffer.get(), step});
        offset += step;
        bytes -= step;
    }
}

std::shared_ptr<FileHandle> FileReplacement::written() const {
    return std::make_shared<FileHandle>("/proc/self/fd/" + std::to_string(file_->number()));
}

void FileReplacement::readBack(uint64_t offset, char* out, size_t bytes) const {
    while (bytes > 0) {
        const ssize_t got = ::pread(file_->number(), out, bytes, off_t(offset));
        if (got < 0 && errno == EINTR) { continue; }
        if (got <= 0) { fail(got < 0 ? errno : EIO); }
        out += got;
        offset += uint64_t(got);
        bytes -= size_t(got);
    }
}

void FileReplacement::setLength(uint64_t bytes) {
    if (::ftruncate(file_->number(), off_t(bytes)) != 0) { fail(errno); }
    end_ = bytes;
    passedOn_ = std::min(passedOn_, end_);
}

ino_t FileReplacement::commit() {
    if (source_ != nullptr) {
        if (const int error = copyAttributes(source_->descriptor(), file_->number())) { fail(error); }
    }
    if (::fsync(file_->number()) != 0) { fail(errno); }
    // From here on, nobody else can begin to write to the source. What was written before has changed its size or time.
    std::optional<SourceClaim> claim;
    if (source_ != nullptr && !waits_) { claim.emplace(source_->descriptor()); }
    if (source_ != nullptr && !sourceIsUnchanged()) { failChanged(); }
    if (!file_->holdsItsName()) { failChanged(); }
    if (claim) { failIfInUse(*claim); }
    struct stat facts {};
    const bool known = ::fstat(file_->number(), &facts) == 0;
    if (const int error = file_->rename(name_)) { fail(error); }
    claim.reset();
    // After the swap there is no way back. If the folder can't be synced, a crash leaves the old or the new file.
    if (syncFolder_) { ::fsync(folder_.number()); }
    return known ? facts.st_ino : 0;
}

bool FileReplacement::commitNew(const std::string& name) {
    if (::fsync(file_->number()) != 0) { fail(errno); }
    if (!file_->holdsItsName()) { failChanged(); }
    const int error = file_->rename(name, false);
    if (error != 0 && error != EEXIST) { fail(error); }
    if (error == 0 && syncFolder_) { ::fsync(folder_.number()); }
    return error == 0;
}

void FileReplacement::clearLeftovers(const std::filesystem::path& folder) noexcept {
    constexpr int64_t idleSeconds = 600;  // some shares have no locks that other machines see
    const Descriptor opened(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!opened.isOpen()) { return; }
    try {
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            const std::string name = entry.path().filename().string();
            if (TemporaryFile::isName(name)) { TemporaryFile::removeDead(name, opened.number(), idleSeconds); }
        }
    } catch (const std::exception&) {  // the rest stays for the next time
    }
}

void FileReplacement::writeText(const std::filesystem::path& target, std::string_view text, const Options& options) {
    FileReplacement file(target, options);
    file.write(text);
    file.commit();
}

// finish() only cuts the file; commit() does the sync.
class FileReplacement::Sink final : public ByteSink {
public:
    explicit Sink(FileReplacement& file) : file_(file) {}
    void writeAt(uint64_t offset, std::span<const uint8_t> bytes) override {
        file_.writeAt(offset, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    }
    void finish(uint64_t length, bool /*sync*/) override { file_.setLength(length); }

private:
    FileReplacement& file_;
};

std::unique_ptr<ByteSink> FileReplacement::sink() {
    return std::make_unique<Sink>(*this);
}

void FileReplacement::failIfInUse(const SourceClaim& claim) const {
    if (const char* reason = claim.objection()) { throw Error(ErrorKind::fileInUse, writeFailure(target_, reason)); }
}

void FileReplacement::fail(int error) const {
    throw Error(writeFailure(target_, std::strerror(error)));
}

void FileReplacement::failChanged() const {
    throw Error(ErrorKind::fileInUse, writeFailure(target_, "it has changed meanwhile"));
}

}  // namespace brindlehum
