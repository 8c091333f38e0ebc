// EditsRecord: which files in a folder of edits are ours to replace, and which piece they were made of.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace brindlehum {

// How each WAV file's description and each sheet begin.
inline constexpr std::string_view editMark = "Brindlehum temp edit: ";
inline constexpr std::string_view sheetMark = "Brindlehum temp edits: ";

// Stored in the folder as `.brindlehum-edits.json`. A file is ours if the record has it with the same size and time. A
// file that isn't recorded is ours if it looks exactly as we write it: left by a crash, or by a version that kept no
// record. Blocking I/O, one thread at a time.
class EditsRecord {
public:
    // Reads the record; a missing or damaged one is empty.
    explicit EditsRecord(std::filesystem::path folder);
    // Stores the record if begin() was called.
    ~EditsRecord();
    EditsRecord(const EditsRecord&) = delete;
    EditsRecord& operator=(const EditsRecord&) = delete;

    // The piece that the folder's edits were made of; none if that is unknown.
    const std::optional<std::filesystem::path>& source() const { return source_; }
    // `wanted` if no file has that name or ours has it; else the same with the first number that does: "Rain - 30s
    // 2.wav".
    std::string nameFor(const std::string& wanted) const;
    // Before files are replaced: stores a record without files, so that a crash leaves no outdated entry. Throws Error.
    void begin(const std::filesystem::path& source);
    // Records a file that was just written.
    void add(const std::string& name);

private:
    struct Stamp {
        int64_t size = 0;      // bytes
        int64_t modified = 0;  // nanoseconds since 1970
    };
    using Files = std::map<std::string, Stamp>;
    void read();
    void store(const Files& files) const;
    bool isOurs(const std::string& name) const;

    const std::filesystem::path folder_;
    std::optional<std::filesystem::path> source_;
    Files files_;
    bool begun_ = false;
};

}  // namespace brindlehum
