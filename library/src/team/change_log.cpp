// This user's own log: its name, and appending to it.
#include "library/team/change_log.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "base/descriptor.h"
#include "base/path.h"

namespace brindlehum::ChangeLog {
namespace {

constexpr mode_t allModeBits = 07777;
constexpr mode_t everybodyReads = 0444;

bool endsInsideALine(int log) {
    struct stat facts {};
    char last = '\n';
    return ::fstat(log, &facts) == 0 && facts.st_size > 0 && ::pread(log, &last, 1, facts.st_size - 1) == 1 &&
           last != '\n';
}

// Makes the log's folders with the root's permissions, whatever the first user's umask, because every user of the root
// must be able to add a file there. False when one of them can't be made or is a link.
bool makeFolders(const std::filesystem::path& root, const std::filesystem::path& folder, mode_t mode) {
    struct stat facts {};
    if (folder == root) { return true; }
    if (!makeFolders(root, folder.parent_path(), mode)) { return false; }
    if (::mkdir(folder.c_str(), mode) == 0) { ::chmod(folder.c_str(), mode); }
    return ::lstat(folder.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
}

// Appends the text in one write, so that a reader never sees two halves in the wrong order. A full disk may cut the
// entry off; that entry is then lost, and the next one begins with a line feed.
void writeAll(int log, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(log, text.data(), text.size());
        if (written < 0 && errno == EINTR) { continue; }
        if (written <= 0) { return; }
        text.remove_prefix(size_t(written));
    }
}

}  // namespace

std::string owner() {
    std::array<char, 256> host{};
    if (::gethostname(host.data(), host.size() - 1) != 0 || host[0] == '\0') { host = {"localhost"}; }
    std::array<char, 4096> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found);
    const std::string user = found != nullptr ? found->pw_name : std::to_string(::getuid());
    return user + "@" + host.data();
}

std::filesystem::path logFile(const std::filesystem::path& root, const std::string& owner) {
    std::string name = owner;
    std::ranges::replace(name, '/', '-');
    return std::filesystem::path(canonicalPath(root)) / ".brindlehum" / "changes" / (name + ".jsonl");
}

void append(const std::filesystem::path& root, const Entry& entry) {
    const auto line = entry.encoded();
    if (!line) { return; }
    const std::filesystem::path file = logFile(root, entry.user);
    const std::string rootPath = canonicalPath(root);
    struct stat rootFacts {};
    if (::stat(rootPath.c_str(), &rootFacts) != 0) { return; }
    if (!makeFolders(rootPath, file.parent_path(), rootFacts.st_mode & allModeBits)) { return; }
    const Descriptor log(::open(file.c_str(), O_RDWR | O_APPEND | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, 0600));
    if (!log.isOpen()) { return; }
    ::fchmod(log.number(), 0600 | (rootFacts.st_mode & everybodyReads));
    // Some network file systems have no locks; at worst, two entries from this machine are then mixed up.
    while (::flock(log.number(), LOCK_EX) != 0 && errno == EINTR) {}
    writeAll(log.number(), (endsInsideALine(log.number()) ? "\n" : "") + *line + "\n");
}

}  // namespace brindlehum::ChangeLog
