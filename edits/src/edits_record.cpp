// EditsRecord: a JSON file, and the marks of files that it doesn't have.
#include "edits_record.h"

#include <sys/stat.h>

#include <array>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "base/file_handle.h"
#include "base/file_replacement.h"
#include "base/file_version.h"
#include "base/stored_path.h"
#include "base/text.h"

namespace brindlehum {

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

constexpr const char* recordName = ".brindlehum-edits.json";
constexpr int64_t maxTextBytes = 1 << 20;
// Some file systems and copying programs round times to two seconds.
constexpr int64_t timeTolerance = 2'000'000'000;  // nanoseconds

std::string textOf(const fs::path& file) {
    const FileHandle handle(file);
    if (handle.size() > maxTextBytes) { return {}; }
    std::string text(size_t(handle.size()), '\0');
    return handle.readExactly(0, text.data(), text.size()) ? text : std::string();
}

int64_t little32(std::string_view bytes, size_t at) {
    int64_t value = 0;
    for (size_t i = 4; i > 0; --i) { value = value << 8 | uint8_t(bytes[at + i - 1]); }
    return value;
}

// True for the header of WavFileWriter with our description, before samples that fill the rest of the file. A program
// that saves the file anew hardly keeps all of that.
bool isOurWave(const fs::path& file) {
    constexpr size_t bextAt = 60;
    constexpr size_t descriptionAt = bextAt + 8;
    constexpr size_t dataAt = 670;
    std::array<char, dataAt + 8> head{};
    const FileHandle handle(file);
    if (!handle.readExactly(0, head.data(), head.size())) { return false; }
    const std::string_view bytes(head.data(), head.size());
    const int64_t samples = little32(bytes, dataAt + 4);
    return bytes.starts_with("RIFF") && bytes.substr(bextAt).starts_with("bext") &&
           bytes.substr(descriptionAt).starts_with(editMark) && bytes.substr(dataAt).starts_with("data") &&
           little32(bytes, 4) == handle.size() - 8 && int64_t(head.size()) + samples + samples % 2 == handle.size();
}

// True for a head, an empty line, then a line with the length and one with the bars for each file: somebody's own notes
// between them, or the line feed that an editor puts at the end, don't fit.
bool isOurSheet(const fs::path& file) {
    const std::string text = textOf(file);
    if (!text.starts_with(sheetMark)) { return false; }
    const auto lines = split(text, "\n");
    size_t at = 0;
    while (at < lines.size() && !lines[at].empty()) { ++at; }
    if (at == lines.size()) { return false; }
    const auto isEntry = [](std::string_view line) { return line.find(".wav    (") != std::string_view::npos; };
    for (++at; at < lines.size(); at += 2) {
        if (!isEntry(lines[at]) || at + 1 == lines.size() || !lines[at + 1].starts_with("    ")) { return false; }
    }
    return true;
}

}  // namespace

EditsRecord::EditsRecord(fs::path folder) : folder_(std::move(folder)) {
    try {
        read();
    } catch (const std::exception&) {
        // The marks in the files must do.
        files_.clear();
    }
}

EditsRecord::~EditsRecord() {
    if (!begun_) { return; }
    try {
        store(files_);
    } catch (const std::exception&) {
        // Without entries the files are still known by their marks.
    }
}

void EditsRecord::read() {
    const json stored = json::parse(textOf(folder_ / recordName));
    source_ = pathFromStored(stored.at("source").get<std::string>());
    for (const auto& [name, stamp] : stored.at("files").items()) {
        files_[pathFromStored(name)] = {stamp.at("size").get<int64_t>(), stamp.at("modified").get<int64_t>()};
    }
}

void EditsRecord::store(const Files& files) const {
    json entries = json::object();
    for (const auto& [name, stamp] : files) {
        entries[storedPath(name)] = {{"size", stamp.size}, {"modified", stamp.modified}};
    }
    const json record = {{"source", storedPath(source_.value_or(fs::path()))}, {"files", entries}};
    FileReplacement::writeText(folder_ / recordName, record.dump(1) + "\n", {.syncFolder = false});
}

void EditsRecord::begin(const fs::path& source) {
    source_ = source;
    store({});
    begun_ = true;
}

void EditsRecord::add(const std::string& name) {
    const FileVersion version = FileVersion::of(folder_ / name);
    files_[name] = {version.size, version.modified};
}

std::string EditsRecord::nameFor(const std::string& wanted) const {
    const fs::path path = wanted;
    std::string name = wanted;
    for (int number = 2;; ++number) {
        struct stat facts {};
        // Also when the name can't be looked at: writing it then fails with the reason.
        if (::lstat((folder_ / name).c_str(), &facts) != 0) { return name; }
        if (S_ISREG(facts.st_mode) && isOurs(name)) { return name; }
        name = path.stem().string() + " " + std::to_string(number) + path.extension().string();
    }
}

bool EditsRecord::isOurs(const std::string& name) const {
    const fs::path file = folder_ / name;
    try {
        if (const auto entry = files_.find(name); entry != files_.end()) {
            const FileVersion now = FileVersion::of(file);
            return now.size == entry->second.size && std::abs(now.modified - entry->second.modified) <= timeTolerance;
        }
        return file.extension() == ".wav" ? isOurWave(file) : isOurSheet(file);
    } catch (const std::exception&) {
        return false;  // it can't be read
    }
}

}  // namespace brindlehum
