// Canonical paths by realpath, and paths as text.
#include "base/path.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <system_error>

#include "base/error.h"
#include "base/text.h"

namespace brindlehum {

namespace {

std::unique_ptr<char, decltype(&std::free)> realPath(const std::filesystem::path& path) {
    return {::realpath(path.c_str(), nullptr), &std::free};
}

std::string printable(const std::string& bytes) {
    std::string text = repairUtf8(bytes);
    for (char& c : text) {
        if (uint8_t(c) < 0x20 || c == 0x7F) { c = '?'; }
    }
    return text;
}

}  // namespace

std::string canonicalPath(const std::filesystem::path& path) {
    if (const auto real = realPath(path)) { return real.get(); }
    std::error_code error;
    std::filesystem::path plain = std::filesystem::absolute(path, error).lexically_normal();
    if (!plain.has_filename() && plain.has_relative_path()) { plain = plain.parent_path(); }
    return plain.string();
}

std::filesystem::path followed(const std::filesystem::path& path) {
    const auto real = realPath(path);
    if (!real) { throw Error(openFailure(path, std::strerror(errno))); }
    return real.get();
}

void createFolders(const std::filesystem::path& folder) {
    std::error_code failure;
    std::filesystem::create_directories(folder, failure);
    std::error_code unknown;
    if (!failure && !std::filesystem::is_directory(folder, unknown)) {
        failure = std::make_error_code(std::errc::not_a_directory);
    }
    if (failure) { throw Error("Couldn't create the folder " + printablePath(folder) + ": " + failure.message()); }
}

std::string printableName(const std::filesystem::path& path) {
    return printable((path.has_filename() ? path.filename() : path.parent_path().filename()).string());
}

std::string printablePath(const std::filesystem::path& path) {
    return printable(path.string());
}

std::string openFailure(const std::filesystem::path& path, const std::string& reason) {
    return printableName(path) + " can't be opened: " + reason;
}

std::string reasonOf(const std::filesystem::path& path, const std::exception& error) {
    const std::string text = error.what();
    const std::filesystem::path real = canonicalPath(path);
    for (const std::string& named : {openFailure(path, ""), writeFailure(path, ""), openFailure(real, ""),
                                     writeFailure(real, ""), printableName(path) + ": "}) {
        if (text.starts_with(named)) { return text.substr(named.size()); }
    }
    return text;
}

std::string readFailure(const std::filesystem::path& path, const std::exception& error) {
    return "Can't read " + printableName(path) + ": " + reasonOf(path, error);
}

std::string writeFailure(const std::filesystem::path& path, const std::string& reason) {
    return "Couldn't write " + printablePath(path) + ": " + reason;
}

}  // namespace brindlehum
