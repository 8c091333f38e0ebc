// A colleague's log of any content, pulled into a real catalog: shared by the fuzzer and the replay of its corpus.
#pragma once

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "library/team/change_log.h"

namespace brindlehum::test {

// Ends the program when a rule of the log is broken. `folder` is empty and the probe's own.
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

    void look(std::string_view bytes) {
        std::ofstream(log(), std::ios::binary | std::ios::trunc) << bytes;
        catalog_.setLogOffset(log().string(), 0);
        const int applied = ChangeLog::pull(root_, catalog_, "me@here");
        const int64_t offset = catalog_.logOffset(log().string());
        check(offset == int64_t(bytes.rfind('\n') + 1), "the position isn't behind the last line feed");
        check(applied <= std::ranges::count(bytes, '\n'), "more entries than lines");
        check(ChangeLog::pull(root_, catalog_, "me@here") == 0, "applied twice");
        for (const auto& row : catalog_.search({}, 100)) {
            const bool inside = row.path == root_ / "a.wav" || row.path == root_ / "b" / "c.flac";
            check(inside || row.meta == SoundMeta(), "an entry has left the root");
        }
        for (size_t start = 0, end; (end = bytes.find('\n', start)) != std::string_view::npos; start = end + 1) {
            const auto entry = ChangeLog::Entry::decode(bytes.substr(start, end - start));
            if (!entry) { continue; }
            const auto line = entry->encoded();
            check(line && line->find('\n') == std::string::npos, "an entry that was read can't be written");
            check(ChangeLog::Entry::decode(*line) == entry, "an entry doesn't survive being written");
        }
    }

private:
    std::filesystem::path log() const { return ChangeLog::logFile(root_, "ann@one"); }
    void add(const std::filesystem::path& path) {
        catalog_.write([&] { catalog_.upsert(path.string(), root_.string(), {1, 1}, std::nullopt, {}); });
    }
    static void check(bool holds, const char* what) {
        if (holds) { return; }
        std::fprintf(stderr, "%s\n", what);
        std::abort();
    }

    const std::filesystem::path root_;
    Catalog catalog_;
};

}  // namespace brindlehum::test
