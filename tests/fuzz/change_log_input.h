// A colleague's log of any content, pulled into a real catalog: shared by the fuzzer and the replay of its corpus.
#pragma once

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>

#include "fuzz/require.h"
#include "library/catalog/catalog_edits.h"
#include "library/scan/library_scanner.h"
#include "library/team/change_log.h"
#include "support/audio_files.h"

namespace brindlehum::test {

// `folder` is empty and the probe's own.
class LogProbe {
public:
    explicit LogProbe(const std::filesystem::path& folder)
        : root_(std::filesystem::canonical(folder) / "root"), catalog_(root_.parent_path() / "Catalog.sqlite") {
        std::filesystem::create_directories(root_ / "b");
        std::filesystem::create_directories(log().parent_path());
        std::filesystem::create_directory_symlink("..", root_ / "out");
        // No kind of file that holds its words, so that the log counts.
        for (const char* name : {"a.caf", "b/c.caf"}) { writeAudio(root_ / name, {{0.5F}}, {.kind = FileKind::caf}); }
        writeAudio(root_.parent_path() / "o.caf", {{0.5F}}, {.kind = FileKind::caf});
        LibraryScanner::scan(root_, catalog_);
        for (const auto& row : catalog_.search({}, 100)) { held_[row.path] = row.meta; }
        for (const char* name : {"o.caf", "root/out/o.caf", "root/../o.caf"}) {
            add(root_.parent_path().string() + "/" + name);
        }
    }

    void look(const std::string& bytes) {
        writeBytes(log(), bytes);
        catalog_.setLogOffset(log().string(), 0);
        const int applied = ChangeLog::pull(root_, catalog_, "me@here");
        const int64_t offset = catalog_.logOffset(log().string());
        require(offset == int64_t(bytes.rfind('\n') + 1), "a position behind the last line feed");
        require(applied <= std::ranges::count(bytes, '\n'), "no more entries than lines");
        require(ChangeLog::pull(root_, catalog_, "me@here") == 0, "entries applied once");
        for (const auto& row : catalog_.search({}, 100)) {
            const auto held = held_.find(row.path);
            require(held != held_.end() || row.meta == SoundMeta(), "entries within the root");
            require(held == held_.end() || row.meta == CatalogEdits(catalog_).over(row.path, held->second),
                    "a row with the newest words");
        }
        for (size_t start = 0, end; (end = bytes.find('\n', start)) != std::string::npos; start = end + 1) {
            const auto entry = ChangeLog::Entry::decode(bytes.substr(start, end - start));
            if (!entry) { continue; }
            const auto line = entry->encoded();
            require(line && line->find('\n') == std::string::npos, "an entry that was read can be written");
            require(ChangeLog::Entry::decode(*line) == entry, "an entry survives being written");
        }
    }

private:
    std::filesystem::path log() const { return ChangeLog::logFile(root_, "ann@one"); }
    void add(const std::filesystem::path& path) {
        catalog_.write([&] { catalog_.upsert(path.string(), root_.string(), {1, 1}, std::nullopt, {}); });
    }
    const std::filesystem::path root_;
    Catalog catalog_;
    std::map<std::string, SoundMeta> held_;  // what the files within the root say
};

// `folder` is the same at every call.
inline void changeLogBytes(const std::string& bytes, const std::filesystem::path& folder) {
    static LogProbe probe(folder);
    probe.look(bytes);
}

}  // namespace brindlehum::test
