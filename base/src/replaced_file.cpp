// ReplacedFile: write beside, sync, rename.
#include "base/replaced_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <utility>

#include "base/byte_sink.h"
#include "base/error.h"
#include "base/text.h"

namespace brindlehum {
namespace {

constexpr std::string_view suffix = ".bh-tmp";
constexpr size_t longestName = 255;  // bytes, on all common file systems

std::filesystem::path hiddenBeside(const std::filesystem::path& target) {
    std::string name = target.filename().native();
    size_t length = std::min(name.size(), longestName - 1 - suffix.size());
    const auto insideCharacter = [&name](size_t at) { return at < name.size() && (name[at] & 0xC0) == 0x80; };
    while (length > 0 && insideCharacter(length)) { --length; }
    name.resize(length);
    return target.parent_path() / ("." + name).append(suffix);
}

}  // namespace

ReplacedFile::ReplacedFile(std::filesystem::path target) : target_(std::move(target)), beside_(hiddenBeside(target_)) {}

ReplacedFile::~ReplacedFile() {
    if (!beside_.empty()) { ::unlink(beside_.c_str()); }
}

void ReplacedFile::write(const std::function<void(const std::filesystem::path&)>& write) {
    try {
        write(beside_);
    } catch (const Error& error) {
        std::string text = error.what();
        const std::string hidden = repairUtf8(beside_.native());
        const size_t at = text.find(hidden);
        if (at == std::string::npos) { throw; }
        throw Error(error.kind(), text.replace(at, hidden.size(), repairUtf8(target_.native())));
    }
}

void ReplacedFile::commit() {
    if (::rename(beside_.c_str(), target_.c_str()) != 0) {
        throw Error("Couldn't write " + repairUtf8(target_.native()) + ": " + std::strerror(errno));
    }
    beside_.clear();
}

void ReplacedFile::writeText(const std::filesystem::path& target, std::string_view text) {
    ReplacedFile file(target);
    file.write([text](const std::filesystem::path& beside) {
        const auto sink = makeFileSink(beside);
        sink->writeAt(0, {reinterpret_cast<const uint8_t*>(text.data()), text.size()});
        sink->finish(text.size(), true);
    });
    file.commit();
}

void ReplacedFile::syncFolder(const std::filesystem::path& folder) {
    const int descriptor = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) { return; }
    ::fsync(descriptor);
    ::close(descriptor);
}

}  // namespace brindlehum
