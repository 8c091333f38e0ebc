// Searches a catalog of a million rows, beside the plain statement on the same file in the same process: median and
// 95th percentile of processor time by what is typed. bench_search [ROWS [FOLDER]]; the catalog stays in FOLDER for
// the next run.
#include <sqlite3.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "corpus.h"
#include "library/catalog.h"
#include "support/cpu_meter.h"
#include "support/meter.h"

using namespace brindlehum;

namespace {

constexpr int limit = 2000;
constexpr uint64_t seed = 20260101;

// The first rows of the ranking by the plain statement, stepped through with every column at hand.
class PlainSearch {
public:
    explicit PlainSearch(const std::filesystem::path& file) {
        sqlite3_open_v2(file.c_str(), &database_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_FULLMUTEX, nullptr);
    }
    ~PlainSearch() { sqlite3_close(database_); }
    PlainSearch(const PlainSearch&) = delete;
    PlainSearch& operator=(const PlainSearch&) = delete;

    std::vector<std::string> paths(const Catalog::Filter& filter) {
        std::string sql =
            "SELECT f.path, f.root, f.duration, f.sr, f.channels, f.bits, f.codec, f.meta FROM files f "
            "JOIN fts ON fts.rowid = f.id WHERE fts MATCH ?1";
        if (filter.category) sql += " AND f.category = '" + *filter.category + "'";
        for (size_t i = 0; i < filter.roots.size(); ++i)
            sql += (i == 0 ? " AND f.root IN ('" : "','") + filter.roots[i];
        if (!filter.roots.empty()) sql += "')";
        sql += " ORDER BY bm25(fts, 4.0, 1.0, 2.0) LIMIT " + std::to_string(limit);
        sqlite3_stmt* select = nullptr;
        sqlite3_prepare_v2(database_, sql.c_str(), -1, &select, nullptr);
        const std::string match = Catalog::matchExpression(filter.query).value();
        sqlite3_bind_text(select, 1, match.c_str(), -1, SQLITE_STATIC);
        std::vector<std::string> paths;
        while (sqlite3_step(select) == SQLITE_ROW) {
            paths.emplace_back(reinterpret_cast<const char*>(sqlite3_column_text(select, 0)));
            for (int column = 1; column < 8; ++column) {
                if (sqlite3_column_text(select, column) == nullptr) std::abort();
            }
        }
        sqlite3_finalize(select);
        return paths;
    }

private:
    sqlite3* database_ = nullptr;
};

void fill(Catalog& catalog, int64_t rows) {
    bench::Corpus corpus(seed);
    constexpr int batch = 256;
    for (int64_t made = 0; made < rows;) {
        std::vector<bench::Corpus::File> files;
        for (; int(files.size()) < batch && made < rows; ++made) files.push_back(corpus.next());
        catalog.write([&] {
            for (const auto& file : files) catalog.upsert(file.path, file.root, {1, 1}, file.info, file.meta);
        });
    }
}

struct Timings {
    std::vector<double> milliseconds;
    double at(double share) {
        std::ranges::sort(milliseconds);
        return milliseconds[std::min(milliseconds.size() - 1, size_t(share * double(milliseconds.size())))];
    }
};

// Every query twice each way in turns, of which the faster counts, so that a neighbour's load weighs less.
void compare(const char* name, Catalog& catalog, PlainSearch& plain, const std::vector<Catalog::Filter>& filters) {
    Timings before, after, ratio;
    for (const Catalog::Filter& filter : filters) {
        std::vector<std::string> expected;
        std::vector<Catalog::Row> rows;
        bench::Best slow, fast;
        for (int turn = 0; turn < 2; ++turn) {
            slow.add(bench::bestCpuSeconds(1, [&] { expected = plain.paths(filter); }));
            fast.add(bench::bestCpuSeconds(1, [&] { rows = catalog.search(filter, limit); }));
        }
        if (!std::ranges::equal(expected, rows, {}, {}, &Catalog::Row::path)) {
            std::printf("other results for %s\n", filter.query.c_str());
            std::exit(1);
        }
        before.milliseconds.push_back(slow.seconds * 1e3);
        after.milliseconds.push_back(fast.seconds * 1e3);
        ratio.milliseconds.push_back(fast.seconds / slow.seconds);
    }
    std::printf("%-34s %4zu  plain %7.2f %7.2f ms  catalog %7.2f %7.2f ms  ratio median %.3f worst %.3f\n", name,
                filters.size(), before.at(0.5), before.at(0.95), after.at(0.5), after.at(0.95), ratio.at(0.5),
                ratio.at(1));
}

}  // namespace

int main(int argc, char** argv) {
    const int64_t rows = argc > 1 ? std::atoll(argv[1]) : 1'000'000;
    const std::filesystem::path folder =
        argc > 2 ? argv[2] : std::filesystem::temp_directory_path() / "brindlehum-bench-catalog";
    std::setvbuf(stdout, nullptr, _IOLBF, BUFSIZ);
    const std::filesystem::path file = folder / (std::to_string(rows) + ".sqlite");
    Catalog catalog(file);
    if (catalog.facets({}).total < rows) {
        const double seconds = bench::secondsOf(1, [&] { fill(catalog, rows); });
        std::printf("%lld rows written in batches of 256: %.0f s, %.0f a second\n", (long long)rows, seconds,
                    double(rows) / seconds);
    }
    std::printf("settled in %.2f s\n", bench::secondsOf(1, [&] { catalog.settle(); }));
    PlainSearch plain(file);
    bench::Corpus corpus(seed + 1);
    const auto prefixes = [&](size_t letters, int count, const Catalog::Filter& filter) {
        std::vector<Catalog::Filter> filters;
        for (int i = 0; i < count; ++i) {
            filters.push_back(filter);
            filters.back().query = corpus.word().substr(0, letters);
        }
        return filters;
    };
    compare("one letter", catalog, plain, prefixes(1, 12, {}));
    compare("two letters", catalog, plain, prefixes(2, 30, {}));
    compare("three letters", catalog, plain, prefixes(3, 40, {}));
    compare("whole words", catalog, plain, prefixes(99, 60, {}));
    std::vector<Catalog::Filter> rare;
    for (int i = 0; i < 40; ++i) rare.push_back({.query = corpus.rareWord()});
    compare("rare words", catalog, plain, rare);
    compare("one letter in all roots", catalog, plain, prefixes(1, 8, {.roots = bench::Corpus::roots}));
    compare("two letters in two roots", catalog, plain,
            prefixes(2, 16, {.roots = {bench::Corpus::roots[0], bench::Corpus::roots[2]}}));
    compare("two letters in a category", catalog, plain, prefixes(2, 16, {.category = "DOORS"}));
    compare("three letters in all roots", catalog, plain, prefixes(3, 16, {.roots = bench::Corpus::roots}));
    std::vector<Catalog::Filter> pairs;
    for (int i = 0; i < 20; ++i) pairs.push_back({.query = corpus.word() + " " + corpus.word().substr(0, 2)});
    compare("a word and two letters", catalog, plain, pairs);
    const double facets = bench::bestSecondsOf(3, 1, [&] { (void)catalog.facets(bench::Corpus::roots); });
    std::printf("facets of three roots: %.2f ms\n", facets * 1e3);
}
