// SourceClaim: makes sure that no other program writes to a file while it is looked at or swapped.
#pragma once

namespace brindlehum {

// Holds a read lease and a lock on the file from its construction to its end. Others can read all the time; who opens
// the file for writing waits for the end, so the claim must be short.
class SourceClaim {
public:
    // `file` is open for reading and must outlive the object.
    explicit SourceClaim(int file);
    ~SourceClaim();
    SourceClaim(const SourceClaim&) = delete;
    SourceClaim& operator=(const SourceClaim&) = delete;

    // Why the file mustn't be replaced: another process has it open for writing, waits to do so, or holds a lock (flock
    // or fcntl) on it. Null if nothing is known against it: the system grants leases only on one's own files, and a
    // network file system may have none.
    const char* objection() const;

private:
    const int file_;
    const char* objection_ = nullptr;
    bool leased_ = false;
    bool locked_ = false;
};

}  // namespace brindlehum
