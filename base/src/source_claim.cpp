// SourceClaim: a read lease fails while a writer exists, and is broken when one comes.
#include "source_claim.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <csignal>

namespace brindlehum {

namespace {

constexpr const char* beingWritten = "another program is writing to it";
constexpr const char* lockedByOther = "another program has locked it";

bool hasRecordLock(int file) {
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    return ::fcntl(file, F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

}  // namespace

SourceClaim::SourceClaim(int file) : file_(file) {
    locked_ = ::flock(file_, LOCK_EX | LOCK_NB) == 0;
    if ((!locked_ && errno == EWOULDBLOCK) || hasRecordLock(file_)) { objection_ = lockedByOther; }
    // A broken lease raises a signal. The usual SIGIO would end the process; this one is ignored unless it is handled.
    ::fcntl(file_, F_SETSIG, SIGURG);
    leased_ = ::fcntl(file_, F_SETLEASE, F_RDLCK) == 0;
    if (!leased_ && errno == EAGAIN && objection_ == nullptr) { objection_ = beingWritten; }
}

SourceClaim::~SourceClaim() {
    if (locked_) { ::flock(file_, LOCK_UN); }
    if (leased_) { ::fcntl(file_, F_SETLEASE, F_UNLCK); }
}

const char* SourceClaim::objection() const {
    if (objection_ == nullptr && leased_ && ::fcntl(file_, F_GETLEASE) != F_RDLCK) { return beingWritten; }
    return objection_;
}

}  // namespace brindlehum
