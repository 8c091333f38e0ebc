// Catalog: the library's index, one SQLite database in write-ahead-log mode with a row per file and a full-text table.
//
// Any thread. Each read has its own connection, takes no lock and sees the state that was committed when it began. All
// writes share one connection, one at a time: write() holds the lock for its job, removeRoot() and setLogOffset() take
// it themselves.
#pragma once

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "audio/probe/audio_file_info.h"
#include "library/catalog/lock_wait.h"
#include "library/meta/sound_meta.h"

namespace brindlehum {

class Catalog {
public:
    struct Row {
        std::string path;       // canonical and absolute; identifies the row
        std::string root;       // canonical
        double duration = 0;    // seconds; 0 when unknown, like the next three
        double sampleRate = 0;  // Hz
        int channels = 0;
        int bits = 0;
        std::string codec;
        SoundMeta meta;
        double modified = 0;  // the file's time of modification; seconds since 1970
        bool operator==(const Row&) const = default;
        // "48 kHz · 24-bit · 2 ch"
        std::string formatSummary() const;
    };
    struct Filter {
        std::string query = {};
        std::optional<std::string> category = {};  // in upper case, like the column
        std::optional<std::string> library = {};
        std::vector<std::string> roots = {};  // canonical; empty means all
        int minRating = 0;
    };
    using Counts = std::vector<std::pair<std::string, int64_t>>;  // the largest count first
    struct Facets {
        Counts categories;
        Counts libraries;
        int64_t total = 0;
    };
    struct Stamp {
        int64_t size = 0;  // bytes
        double mtime = 0;  // seconds since 1970
        static constexpr double mtimeTolerance = 0.001;
        bool matches(const Stamp& other) const {
            return size == other.size && std::abs(mtime - other.mtime) < mtimeTolerance;
        }
    };

    // Creates missing parent folders, opens the database and brings its schema up to date. Throws Error
    // (catalogUnopenable, or catalog with SQLite's own message; CatalogLocked after three seconds) or
    // std::filesystem::filesystem_error. `wait` is for this and all later writes.
    explicit Catalog(const std::filesystem::path& file, LockWait wait = {});
    ~Catalog();
    Catalog(const Catalog&) = delete;
    Catalog& operator=(const Catalog&) = delete;

    // Ranked when the query has words, else sorted by path. Empty on a failure.
    std::vector<Row> search(const Filter& filter, int limit);
    // Ends the searches that are running now, which then return nothing. Any thread, takes no lock.
    void interrupt();
    std::optional<Row> row(const std::string& path);
    Facets facets(const std::vector<std::string>& roots);
    std::unordered_map<std::string, Stamp> stamps(const std::string& root);
    int64_t logOffset(const std::string& logfile);  // 0 for an unknown log
    void setLogOffset(const std::string& logfile, int64_t offset);
    // Removes the root's rows, edits and renames, and forgets how far its logs were read.
    void removeRoot(const std::string& root);

    // Call these only inside write(), since they take no lock. There, row() and logOffset() return the state before the
    // write, which no other process changes meanwhile. `info` is absent when the file can't be probed. The row gets
    // `held`, which is what the file holds, with the newer words over it that only CatalogEdits has.
    void upsert(const std::string& path, const std::string& root, const Stamp& stamp,
                const std::optional<AudioFileInfo>& info, const SoundMeta& held);
    // Lays the newer words over the row; does nothing for a file without one.
    void refreshWords(const std::string& path);
    // The next scan reads the file again, unless an upsert() comes first.
    void markUnread(const std::string& path);
    void remove(const std::string& path);
    std::optional<Stamp> stamp(const std::string& path);
    void storeLogOffset(const std::string& logfile, int64_t offset);
    // Runs `job` under the lock in one transaction. Commits when it returns; rolls back and rethrows when it throws.
    // Throws CatalogLocked when another program hasn't let go of the database within half a minute.
    void write(const std::function<void()>& job);

    // Makes searches for one or two letters fast again after many writes, in transactions of a tenth of a second, until
    // all is done or one fails. For the background; scans end with it. Without it, each write() does a part.
    void settle();

    // The full-text expression for typed text; none when it has no words.
    static std::optional<std::string> matchExpression(std::string_view query);

private:
    friend class CatalogEdits;
    struct Parts;
    std::mutex lock_;
    std::unique_ptr<Parts> parts_;
};

}  // namespace brindlehum
