// PullFile: tries one name after another.
#include "pull_file.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "audio/write/wav_file_writer.h"
#include "base/error.h"
#include "base/path.h"
#include "mix/export/export_name.h"

namespace brindlehum {
namespace {

constexpr int mostNames = 10000;
constexpr size_t blockBytes = 1 << 20;

std::filesystem::path made(const std::filesystem::path& folder) {
    createFolders(folder);
    FileReplacement::clearLeftovers(folder);
    return folder;
}

// Both hold the first `bytes` bytes of two files.
void forgetCreationTime(std::vector<char>& block) {
    constexpr size_t end = WavFileWriter::creationOffset + WavFileWriter::creationBytes;
    if (block.size() >= end) {
        std::fill_n(block.begin() + WavFileWriter::creationOffset, end - WavFileWriter::creationOffset, 0);
    }
}

bool sameContent(const FileHandle& a, const FileHandle& b) {
    if (a.size() != b.size()) { return false; }
    std::vector<char> ours(blockBytes);
    std::vector<char> theirs(blockBytes);
    for (int64_t at = 0; at < a.size(); at += int64_t(ours.size())) {
        const auto count = size_t(std::min<int64_t>(int64_t(blockBytes), a.size() - at));
        ours.resize(count);
        theirs.resize(count);
        if (!a.readExactly(at, ours.data(), count) || !b.readExactly(at, theirs.data(), count)) { return false; }
        if (at == 0) {
            std::ranges::for_each(std::array{&ours, &theirs}, [](auto* block) { forgetCreationTime(*block); });
        }
        if (std::memcmp(ours.data(), theirs.data(), count) != 0) { return false; }
    }
    return true;
}

// Whether the name is taken by the same content; what can't be read is other content.
bool holds(const std::filesystem::path& file, const FileHandle& content) {
    try {
        return sameContent(FileHandle(file), content);
    } catch (const Error&) { return false; }
}

}  // namespace

PullFile::PullFile(const std::filesystem::path& folder, const std::string& name)
    : folder_(made(folder)), name_(name), file_(folder / name, {.isNew = true}) {}

std::filesystem::path PullFile::place() {
    const auto written = file_.written();
    for (int number = 1; number <= mostNames; ++number) {
        const std::string name = ExportName::numbered(name_, number);
        if (file_.commitNew(name) || holds(folder_ / name, *written)) { return folder_ / name; }
    }
    throw Error(writeFailure(folder_ / name_, "there are too many files of this name"));
}

}  // namespace brindlehum
