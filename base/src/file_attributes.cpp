// Copies the owner first, since its change clears permission bits; then permissions, then lists that refine them.
#include "file_attributes.h"

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <string>
#include <vector>

namespace brindlehum {

namespace {

constexpr const char* accessList = "system.posix_acl_access";

// Reads attributes that may grow between the call for their size and the next one. None on failure, with errno set.
template <typename Ask>
std::optional<std::string> grown(Ask ask) {
    for (;;) {
        const ssize_t size = ask(nullptr, 0);
        if (size < 0) { return std::nullopt; }
        std::string bytes(size_t(size), '\0');
        const ssize_t got = size == 0 ? 0 : ask(bytes.data(), bytes.size());
        if (got < 0 && errno == ERANGE) { continue; }
        if (got < 0) { return std::nullopt; }
        bytes.resize(size_t(got));
        return bytes;
    }
}

std::vector<std::string> attributeNames(int file) {
    const auto list = grown([&](char* out, size_t size) { return ::flistxattr(file, out, size); });
    std::vector<std::string> names;
    for (size_t at = 0; list && at < list->size();) {
        names.emplace_back(list->c_str() + at);
        at += names.back().size() + 1;
    }
    return names;
}

// True for attributes that belong to the file's owner rather than to the system.
bool mustBeKept(const std::string& name) {
    return name == accessList || name.starts_with("user.");
}

int copyAttribute(const std::string& name, int from, int to) {
    const auto value = grown([&](char* out, size_t size) { return ::fgetxattr(from, name.c_str(), out, size); });
    if (!value) { return errno == ENODATA || !mustBeKept(name) ? 0 : errno; }
    if (::fsetxattr(to, name.c_str(), value->data(), value->size(), 0) == 0) { return 0; }
    return mustBeKept(name) ? errno : 0;
}

int copyOwnerAndMode(const struct stat& from, int to) {
    struct stat now {};
    if (::fstat(to, &now) != 0) { return errno; }
    bool group = now.st_gid == from.st_gid;
    if (now.st_uid != from.st_uid || !group) {
        group = ::fchown(to, from.st_uid, from.st_gid) == 0 || ::fchown(to, uid_t(-1), from.st_gid) == 0;
    }
    mode_t mode = from.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO);
    if (!group) { mode &= ~mode_t(S_IRWXG) | (mode & S_IRWXO) << 3; }
    return ::fchmod(to, mode) == 0 ? 0 : errno;
}

}  // namespace

int copyAttributes(int from, int to) {
    struct stat status {};
    if (::fstat(from, &status) != 0) { return errno; }
    if (const int error = copyOwnerAndMode(status, to)) { return error; }
    const std::vector<std::string> wanted = attributeNames(from);
    // The folder may have given the new file an access list that the old one doesn't have.
    const bool listed = std::ranges::find(wanted, accessList) != wanted.end();
    if (!listed) { ::fremovexattr(to, accessList); }
    for (const std::string& name : wanted) {
        if (const int error = copyAttribute(name, from, to)) { return error; }
    }
    return 0;
}

}  // namespace brindlehum
