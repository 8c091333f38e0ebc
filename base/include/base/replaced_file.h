// ReplacedFile: a file that takes its name only when it is whole. What stood there stays until then.
#pragma once

#include <filesystem>
#include <functional>
#include <string_view>

namespace brindlehum {

// One thread at a time, blocking I/O. Two writers of one name at once spoil each other's work.
class ReplacedFile {
public:
    // Under the name `target` in the end; until then under a hidden name in the same folder, which is always the same,
    // so that what a crash left is taken by the next attempt.
    explicit ReplacedFile(std::filesystem::path target);
    // Removes what was written, unless it was committed.
    ~ReplacedFile();
    ReplacedFile(const ReplacedFile&) = delete;
    ReplacedFile& operator=(const ReplacedFile&) = delete;

    // Runs `write` on the hidden file, which has to be on the disk afterwards (synced). An Error that names the hidden
    // file comes out with the name that the user knows.
    void write(const std::function<void(const std::filesystem::path&)>& write);
    // Puts the file in place, over what stood there. Throws Error. Until the folder is synced too, a crash of the
    // system may bring back what stood there.
    void commit();

    // A whole text in one go. Throws Error.
    static void writeText(const std::filesystem::path& target, std::string_view text);

    // Puts on the disk which files a folder holds. Fails silently: not every file system can.
    static void syncFolder(const std::filesystem::path& folder);

private:
    std::filesystem::path target_;
    std::filesystem::path beside_;
};

}  // namespace brindlehum
