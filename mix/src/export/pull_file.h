// PullFile: a new file of the day's folder, which comes to be under a name that no other file has.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "base/file_replacement.h"

namespace brindlehum {

// Beside other files, whose names it goes round. Without place() nothing stays behind. One thread, blocking I/O.
class PullFile {
public:
    // Makes the folder, and clears it of what crashed exports have left. Throws Error.
    PullFile(const std::filesystem::path& folder, const std::string& name);

    // For the writer of the file, which must have finished it before place().
    FileReplacement& file() { return file_; }
    // Puts the file under its name, or the first numbered one that is free or holds the same content already; two files
    // are the same that differ only in the time when they were made. Returns the file of that name. Throws Error.
    std::filesystem::path place();

private:
    std::filesystem::path folder_;
    std::string name_;
    FileReplacement file_;
};

}  // namespace brindlehum
