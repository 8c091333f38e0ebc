// Mounts: reads the kernel's table of mounts.
#include "platform/mounts.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

namespace brindlehum {
namespace {

namespace fs = std::filesystem;

// The kernel escapes blanks and the like as a backslash and three octal digits.
std::string unescaped(const std::string& text) {
    const auto isOctal = [](char c) { return c >= '0' && c <= '7'; };
    std::string plain;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 3 < text.size() && std::all_of(&text[i + 1], &text[i] + 4, isOctal)) {
            plain += char((text[i + 1] - '0') * 64 + (text[i + 2] - '0') * 8 + (text[i + 3] - '0'));
            i += 3;
        } else {
            plain += text[i];
        }
    }
    return plain;
}

bool isOneOf(std::string_view text, std::initializer_list<std::string_view> list) {
    return std::ranges::find(list, text) != list.end();
}

bool isUnder(const std::string& path, std::string_view folder) {
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

// True for a disk or a share of another machine.
bool holdsFiles(const std::string& type, const std::string& source) {
    if (isOneOf(type, {"nfs", "nfs4", "cifs", "smb3", "smbfs", "9p", "afs", "ceph", "zfs", "fuse.sshfs", "fuse.rclone",
                       "fuse.glusterfs", "virtiofs"})) {
        return true;
    }
    return source.starts_with("/dev/") && !source.starts_with("/dev/loop") &&
           !isOneOf(type, {"squashfs", "devtmpfs", "tmpfs", "ramfs", "overlay", "erofs", "swap"});
}

bool isForPeople(const std::string& point) {
    if (point == "/" || point == "/home" || point.find("/.") != std::string::npos) { return false; }
    if (isUnder(point, "/run")) { return isUnder(point, "/run/media"); }
    static constexpr std::array systemFolders = {"/boot", "/dev",  "/efi", "/etc", "/lib", "/opt",
                                                 "/proc", "/snap", "/sys", "/tmp", "/usr", "/var"};
    return std::ranges::none_of(systemFolders, [&](const char* folder) { return isUnder(point, folder); });
}

}  // namespace

std::vector<fs::path> volumesIn(std::string_view mountInfo) {
    std::vector<fs::path> volumes;
    std::istringstream lines{std::string(mountInfo)};
    for (std::string line; std::getline(lines, line);) {
        // "36 35 98:0 / /mnt/point rw,noatime shared:1 - ext4 /dev/sdb1 rw": any number of further fields may follow
        // the options, up to the lone dash.
        std::istringstream words(line);
        const std::vector<std::string> fields{std::istream_iterator<std::string>(words), {}};
        const auto dash = std::ranges::find(fields, "-");
        if (fields.size() < 6 || fields.end() - dash < 3) { continue; }
        const std::string point = unescaped(fields[4]);
        if (!holdsFiles(dash[1], dash[2]) || !isForPeople(point)) { continue; }
        if (std::ranges::find(volumes, fs::path(point)) == volumes.end()) { volumes.emplace_back(point); }
    }
    return volumes;
}

std::vector<fs::path> mountedVolumes() {
    std::ifstream table("/proc/self/mountinfo");
    const std::string text{std::istreambuf_iterator<char>(table), {}};
    return volumesIn(text);
}

}  // namespace brindlehum
