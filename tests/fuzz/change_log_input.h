// A colleague's log of any content, pulled into a real catalog: shared by the fuzzer and the replay of its corpus.
#pragma once

#include <algorithm>
#include <filesystem>
#include <string>

#include "fuzz/require.h"
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
        for (const char* name : {"a.wav", "b/c.flac"}) { add(root_ / name); }
        for (const char* name : {"o.wav", "root/out/o.wav", "root/../o.wav"}) {
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
            const bool inside = row.path == root_ / "a.wav" || row.path == root_ / "b" / "c.flac";
            require(inside || row.meta == SoundMeta(), "entries within the root");
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
};

// `folder` is the same at every call.
inline void changeLogBytes(const std::string& bytes, const std::filesystem::path& folder) {
    static LogProbe probe(folder);
    probe.look(bytes);
}

}  // namespace brindlehum::test
