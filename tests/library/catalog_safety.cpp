// Damaged catalog files, several processes and threads on one catalog, and interrupted searches.
#include <atomic>
#include <thread>

#include "catalog_test.h"
#include "support/child.h"
#include "support/refusal.h"

namespace brindlehum::test {
namespace {

class CatalogSafety : public CatalogTest {
protected:
    void SetUp() override {
        Catalog catalog(file);
        catalog.write([&] {
            for (int i = 0; i < 300; ++i) {
                catalog.upsert("/lib/" + std::to_string(i) + ".wav", "/lib", {1, 1}, {}, {});
            }
        });
    }
    static int refusal(const std::filesystem::path& path) {
        const auto kind = refusalOf([&] { Catalog catalog(path); }).kind;
        return kind ? int(*kind) : 0;
    }
    static SoundMeta withName(const std::string& name) {
        SoundMeta meta;
        meta.fxName = name;
        return meta;
    }
    void overwrite(int64_t at, const std::string& bytes) const {
        std::fstream(file, std::ios::in | std::ios::out | std::ios::binary)
            .seekp(at)
            .write(bytes.data(), std::ssize(bytes));
    }
};

TEST_F(CatalogSafety, RefusesWhatIsNoCatalogOfThisVersionOrCannotBeWritten) {
    EXPECT_EQ(refusal(folder), 80) << "a folder in its place";
    for (const auto& above : {folder, file.parent_path()}) {
        std::filesystem::permissions(above, std::filesystem::perms(0755));
    }
    std::filesystem::permissions(file, std::filesystem::perms(0444));
    EXPECT_TRUE(Child([&] { return becomeNobody() && refusal(file) >= 80; }).succeeded()) << "read-only";
    std::filesystem::permissions(file, std::filesystem::perms(0644));
    {
        PlainDatabase other(file);
        other.exec("PRAGMA locking_mode=EXCLUSIVE");
        other.exec("BEGIN IMMEDIATE");
        EXPECT_EQ(refusal(file), 81) << "locked by another program";
    }
    PlainDatabase(file).exec("PRAGMA user_version=3");
    EXPECT_EQ(refusalOf([&] { Catalog catalog(file); }).text, "The library catalog was made by a newer version");
    std::filesystem::resize_file(file, 3 * 4096 + 7);
    EXPECT_EQ(refusal(file), 81) << "cut short";
    overwrite(0, std::string(4096, 'x'));
    EXPECT_EQ(refusal(file), 81) << "another file";
}

TEST_F(CatalogSafety, LongWaitForAnotherProgramIsAnnouncedWhileItLasts) {
    PlainDatabase other(file);
    int told = 0;
    Catalog catalog(file, {[&] {
                               ++told;
                               other.exec("ROLLBACK");
                           },
                           {}});
    put(catalog, "/a.wav", "/");
    EXPECT_EQ(told, 0);
    other.exec("BEGIN EXCLUSIVE");
    put(catalog, "/b.wav", "/");
    EXPECT_EQ(told, 1);
    EXPECT_TRUE(catalog.row("/b.wav"));
}

// As version 1 left it: words of files that can't hold any are in rows alone, and rows have what logs said in any
// order.
TEST_F(CatalogSafety, OlderCatalogKeepsItsWordsAndReadsTheLogsAgain) {
    {
        Catalog catalog(file);
        SoundMeta meta = withName("a");
        meta.description = "only here";
        meta.rating = 3;
        put(catalog, "/lib/a.caf", "/lib", meta);
        put(catalog, "/lib/a.wav", "/lib", meta);
        put(catalog, "/solo/a.wav", "/solo", meta);
        catalog.setLogOffset("/lib/.brindlehum/changes/ann@one.jsonl", 99);
        PlainDatabase old(file);
        for (const char* statement : {"DROP TABLE edits", "DROP TABLE moves", "PRAGMA user_version=1"}) {
            old.exec(statement);
        }
    }
    for (int turn = 0; turn < 2; ++turn) {
        Catalog catalog(file);
        EXPECT_EQ(catalog.row("/lib/a.caf")->meta.description, "only here");
        EXPECT_EQ(catalog.logOffset("/lib/.brindlehum/changes/ann@one.jsonl"), 0);
        EXPECT_EQ(catalog.stamps("/lib").at("/lib/a.wav").mtime, 0) << "is read by the next scan";
        EXPECT_EQ(catalog.stamps("/solo").at("/solo/a.wav").mtime, 1.5) << "no log ever changed its row";
        put(catalog, "/lib/a.caf", "/lib", withName("b"));
        SoundMeta kept = withName("b");
        kept.description = "only here";
        kept.rating = 3;
        EXPECT_EQ(catalog.row("/lib/a.caf")->meta, kept) << "though its file has changed";
    }
}

TEST_F(CatalogSafety, SurvivesDamagedPages) {
    const int64_t size = int64_t(std::filesystem::file_size(file));
    for (int64_t at = 4096; at + 4096 <= size; at += 4096) {
        std::filesystem::copy_file(file, folder / "kept", std::filesystem::copy_options::overwrite_existing);
        overwrite(at, std::string(3000, '\x7F'));
        try {
            Catalog catalog(file);
            for (const char* query : {"1", "12", "123", ""}) { (void)catalog.search({.query = query}, 2000); }
            (void)catalog.facets({});
            (void)catalog.stamps("/lib");
            put(catalog, "/lib/1.wav", "/lib");
            catalog.settle();
        } catch (const Error&) {}
        for (const char* part : {"-wal", "-shm"}) { std::filesystem::remove(file.string() + part); }
        std::filesystem::copy_file(folder / "kept", file, std::filesystem::copy_options::overwrite_existing);
    }
    EXPECT_EQ(Catalog(file).facets({}).total, 300);
}

// Four processes begin at once on a new file: each makes its tables, and writes files of its own and shared ones.
TEST_F(CatalogSafety, ProcessesWritingAtOnceLoseNoRow) {
    const std::filesystem::path shared = folder / "shared" / "Catalog.sqlite";
    constexpr int processes = 4, batches = 60, ownFiles = 12;
    std::vector<Child> children;
    for (int process = 0; process < processes; ++process) {
        children.emplace_back([&] {
            Catalog catalog(shared);
            for (int batch = 0; batch < batches; ++batch) {
                catalog.write([&] {
                    const auto put = [&](const std::string& name) {
                        catalog.upsert("/lib/" + name + ".wav", "/lib", {process, double(batch)}, {}, {});
                    };
                    for (int i = 0; i < ownFiles; ++i) {
                        put("p" + std::to_string(process) + "_" + std::to_string(batch * ownFiles + i));
                    }
                    put("shared_" + std::to_string(batch));
                });
                if (batch % 20 == process) { catalog.settle(); }
            }
            return true;
        });
    }
    for (const Child& child : children) { EXPECT_TRUE(child.succeeded()); }
    constexpr int64_t expected = processes * batches * ownFiles + batches;
    Catalog catalog(shared);
    EXPECT_EQ(catalog.facets({}).total, expected);
    EXPECT_EQ(catalog.search({.query = "p2"}, 10'000).size(), size_t(batches * ownFiles));
    PlainDatabase plain(shared);
    plain.exec("INSERT INTO fts(fts) VALUES ('integrity-check')");
    EXPECT_EQ(plain.rows("PRAGMA integrity_check"), std::vector<std::string>{"ok"});
    EXPECT_EQ(plain.rows("SELECT count(*) FROM files JOIN fts ON fts.rowid = id"),
              std::vector{std::to_string(expected)});
}

// Readers and writers of one process at the same time, for the thread sanitizer.
TEST_F(CatalogSafety, ReadersSeeOnlyGrowthWhileTwoCatalogsWrite) {
    Catalog catalog(file), second(file);
    std::atomic<bool> writing = true;
    std::vector<std::thread> readers;
    for (int i = 0; i < 3; ++i) {
        readers.emplace_back([&] {
            size_t least = 300;
            while (writing) {
                // Files are only added, so the count never falls.
                const size_t found = size_t(catalog.facets({}).total);
                EXPECT_GE(found, least);
                least = found;
                EXPECT_TRUE(catalog.row("/lib/7.wav"));
                EXPECT_GE(catalog.search({.query = "1"}, 2000).size(), 111U);
            }
        });
    }
    std::vector<std::thread> writers;
    for (Catalog* each : {&catalog, &second}) {
        writers.emplace_back([&, each] {
            const std::string path = each == &second ? "/lib/1 b" : "/lib/1 a";
            for (int i = 0; i < 40; ++i) { put(*each, path + std::to_string(i), "/lib"); }
        });
    }
    for (std::thread& writer : writers) { writer.join(); }
    writing = false;
    for (std::thread& reader : readers) { reader.join(); }
    EXPECT_EQ(second.facets({}).total, 380);
}

TEST_F(CatalogSafety, InterruptedSearchReturnsNothing) {
    Catalog catalog(file);
    catalog.write([&] {
        SoundMeta meta;
        for (int i = 0; i < 40; ++i) { meta.description += " a" + std::to_string(i); }
        for (int i = 0; i < 2000; ++i) { catalog.upsert("/lib/a" + std::to_string(i), "/lib", {1, 1}, {}, meta); }
    });
    std::string query;
    for (int i = 0; i < 40; ++i) { query += " a"; }
    std::atomic<bool> done = false;
    std::vector<Catalog::Row> rows(1);
    std::thread search([&] {
        rows = catalog.search({.query = query}, 2000);
        done = true;
    });
    // An interrupt before the search has begun has no effect, so one call isn't enough.
    while (!done) {
        catalog.interrupt();
        std::this_thread::yield();
    }
    search.join();
    EXPECT_EQ(rows.size(), 0U);
    EXPECT_EQ(catalog.search({.query = query}, 2000).size(), 2000U) << "a later search";
}

}  // namespace
}  // namespace brindlehum::test
