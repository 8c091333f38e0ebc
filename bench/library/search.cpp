// Searches and writes a catalog of a million rows, beside the plain statement on the same file in the same process:
// median and 95th percentile of processor time by what is typed. bench_search [ROWS [FOLDER]]; the catalog stays in
// FOLDER for the next run.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "corpus.h"
#include "library/catalog/catalog.h"
#include "plain_catalog.h"
#include "support/cpu_meter.h"
#include "support/meter.h"

using namespace brindlehum;

namespace {

constexpr int limit = 2000;
constexpr uint64_t seed = 20260101;

constexpr int batch = 256;

void fill(Catalog& catalog, int64_t rows) {
    bench::Corpus corpus(seed);
    for (int64_t made = 0; made < rows;) {
        std::vector<bench::Corpus::File> files;
        for (; int(files.size()) < batch && made < rows; ++made) { files.push_back(corpus.next()); }
        catalog.write([&] {
            for (const auto& file : files) { catalog.upsert(file.path, file.root, {1, 1}, file.info, file.meta); }
        });
    }
}

// Both ways into new files, batch by batch in turns.
void compareWrites(const std::filesystem::path& folder, int64_t rows) {
    const std::filesystem::path files[] = {folder / "plain.sqlite", folder / "own.sqlite"};
    for (const auto& file : files) {
        for (const char* part : {"", "-wal", "-shm"}) { std::filesystem::remove(file.string() + part); }
    }
    bench::PlainWriter plain(files[0]);
    Catalog catalog(files[1]);
    bench::Corpus corpus(seed + 2);
    double before = 0, after = 0;
    for (int64_t made = 0; made < rows; made += batch) {
        std::vector<bench::Corpus::File> made256;
        for (int i = 0; i < batch; ++i) { made256.push_back(corpus.next()); }
        before += bench::bestCpuSeconds(1, [&] { plain.write(made256); });
        after += bench::bestCpuSeconds(1, [&] {
            catalog.write([&] {
                for (const auto& file : made256) { catalog.upsert(file.path, file.root, {1, 1}, file.info, file.meta); }
            });
        });
    }
    std::printf("writing %lld rows: plain %.0f us a row, catalog %.0f us, ratio %.2f\n", static_cast<long long>(rows),
                before / double(rows) * 1e6, after / double(rows) * 1e6, after / before);
}

// How long a long search continues after it was cancelled.
void measureInterrupts(Catalog& catalog) {
    std::vector<double> milliseconds;
    for (const char* query : {"d o", "s w", "door s", "the of", "a b c", "e t"}) {
        std::chrono::steady_clock::time_point ended;
        std::thread search([&] {
            (void)catalog.search({.query = query}, limit);
            ended = std::chrono::steady_clock::now();
        });
        std::this_thread::sleep_for(std::chrono::milliseconds(60));
        const auto called = std::chrono::steady_clock::now();
        catalog.interrupt();
        search.join();
        milliseconds.push_back(std::max(0.0, std::chrono::duration<double, std::milli>(ended - called).count()));
    }
    std::ranges::sort(milliseconds);
    std::printf("a search called off ends after %.1f ms, at most %.1f ms\n", milliseconds[milliseconds.size() / 2],
                milliseconds.back());
}

struct Timings {
    std::vector<double> milliseconds;
    double at(double share) {
        std::ranges::sort(milliseconds);
        return milliseconds[std::min(milliseconds.size() - 1, size_t(share * double(milliseconds.size())))];
    }
};

// Every query twice each way in turns; the faster run counts, so that other load on the machine weighs less.
void compare(const char* name, Catalog& catalog, bench::PlainSearch& plain,
             const std::vector<Catalog::Filter>& filters) {
    Timings before, after, ratio;
    for (const Catalog::Filter& filter : filters) {
        std::vector<std::string> expected;
        std::vector<Catalog::Row> rows;
        bench::Best slow, fast;
        for (int turn = 0; turn < 2; ++turn) {
            slow.add(bench::bestCpuSeconds(1, [&] { expected = plain.paths(filter); }));
            fast.add(bench::bestCpuSeconds(1, [&] { rows = catalog.search(filter, limit); }));
        }
        if (expected.empty()) { continue; }  // the catalog looks for parts of words then
        // The order of equal ranks differs: the catalog sorts them by name.
        std::ranges::sort(expected);
        std::ranges::sort(rows, {}, &Catalog::Row::path);
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
        std::printf("%lld rows written in batches of 256: %.0f s, %.0f a second\n", static_cast<long long>(rows),
                    seconds, double(rows) / seconds);
    }
    std::printf("settled in %.2f s\n", bench::secondsOf(1, [&] { catalog.settle(); }));
    bench::PlainSearch plain(file, limit);
    bench::Corpus corpus(seed + 1);
    const auto prefixes = [&](size_t letters, int count, const Catalog::Filter& filter) {
        std::vector<Catalog::Filter> filters;
        for (int i = 0; i < count; ++i) {
            filters.push_back(filter);
            filters.back().query = corpus.word().substr(0, letters);
        }
        return filters;
    };
    compare("one letter", catalog, plain, prefixes(1, 10, {}));
    compare("two letters", catalog, plain, prefixes(2, 20, {}));
    compare("three letters", catalog, plain, prefixes(3, 24, {}));
    compare("whole words", catalog, plain, prefixes(99, 30, {}));
    std::vector<Catalog::Filter> rare;
    for (int i = 0; i < 30; ++i) { rare.push_back({.query = corpus.rareWord()}); }
    compare("rare words", catalog, plain, rare);
    compare("one letter in all roots", catalog, plain, prefixes(1, 5, {.roots = bench::Corpus::roots}));
    compare("two letters in two roots", catalog, plain,
            prefixes(2, 10, {.roots = {bench::Corpus::roots[0], bench::Corpus::roots[2]}}));
    compare("two letters in a category", catalog, plain, prefixes(2, 10, {.category = "DOORS"}));
    compare("three letters in all roots", catalog, plain, prefixes(3, 10, {.roots = bench::Corpus::roots}));
    std::vector<Catalog::Filter> pairs;
    for (int i = 0; i < 12; ++i) { pairs.push_back({.query = corpus.word() + " " + corpus.word().substr(0, 2)}); }
    compare("a word and two letters", catalog, plain, pairs);
    const double facets = bench::bestSecondsOf(3, 1, [&] { (void)catalog.facets(bench::Corpus::roots); });
    std::printf("facets of three roots: %.2f ms\n", facets * 1e3);
    // A write, and the search after it.
    bench::Corpus more(seed + 3);
    Timings again;
    for (int i = 0; i < 10; ++i) {
        const bench::Corpus::File made = more.next();
        catalog.write([&] { catalog.upsert(made.path, made.root, {1, 1}, made.info, made.meta); });
        again.milliseconds.push_back(1e3 *
                                     bench::bestCpuSeconds(1, [&] { (void)catalog.search({.query = "s"}, limit); }));
    }
    std::printf("one letter, each time after a write: %.2f ms\n", again.at(0.5));
    measureInterrupts(catalog);
    compareWrites(folder, std::min<int64_t>(rows, 100'000));
}
