// Short search: computes FTS5's bm25() from the blocks, once for each class of equal hits.
#include "catalog/short_search.h"

#include <algorithm>
#include <cmath>
#include <string_view>
#include <unordered_map>

#include "catalog/file_words.h"
#include "catalog/short_hits.h"
#include "catalog/tokenizer.h"

namespace brindlehum {

namespace {

constexpr int64_t maxBlocks = 20'000;  // of 4096 ids each; they are read one by one

// Totals over the whole table, for the ranking.
struct Totals {
    int64_t files = 0;
    int64_t words = 0;
};

// FTS5 stores its totals as one record of SQLite's variable-length integers: rows, then words by column.
Totals readTotals(const Database& database) {
    Statement select(database, "SELECT block FROM fts_data WHERE id = 1");
    if (!select.step()) { return {}; }
    const std::string_view record = select.blob(0);
    size_t at = 0;
    const auto next = [&] {
        uint64_t value = 0;
        for (int length = 1; at < record.size(); ++length) {
            const auto byte = uint8_t(record[at++]);
            if (length == 9) { return int64_t(value << 8 | byte); }
            value = value << 7 | (byte & 0x7F);
            if (byte < 0x80) { break; }
        }
        return int64_t(value);
    };
    Totals totals{.files = next()};
    for (size_t column = 0; column < std::size(columnWeights); ++column) { totals.words += next(); }
    return totals;
}

// FTS5's bm25() for one phrase, with the same order of operations, so that equal ranks come out equal.
class Bm25 {
public:
    Bm25(const Totals& totals, int64_t matching) : averageWords_(double(totals.words) / double(totals.files)) {
        const double rarity = std::log((double(totals.files - matching) + 0.5) / (double(matching) + 0.5));
        rarity_ = rarity <= 0 ? 1e-6 : rarity;
    }
    // A lower result is better.
    double operator()(uint32_t hits, uint32_t words) const {
        constexpr double k1 = 1.2, b = 0.75;
        const double frequency = hits;
        return -1.0 *
               (rarity_ * ((frequency * (k1 + 1.0)) / (frequency + k1 * (1 - b + b * double(words) / averageWords_))));
    }

private:
    double averageWords_, rarity_ = 0;
};

// Millions of hits fall into some thousand classes with equal hits and words, so that only few ranks are computed.
class Classes {
public:
    static bool has(const Hit& hit) { return hit.hits < maxHits && hit.words < maxWords; }
    static size_t of(const Hit& hit) { return hit.hits * maxWords + hit.words; }
    static Hit example(size_t index) { return {0, uint32_t(index / maxWords), uint32_t(index % maxWords)}; }
    static constexpr size_t count() { return size_t(maxHits) * maxWords; }

private:
    static constexpr uint32_t maxHits = 256, maxWords = 1024;
};

// The rank of the hit at place `limit`, or of the last hit if there are fewer.
double rankOfLast(const std::vector<Hit>& hits, size_t limit, const Bm25& bm25) {
    std::vector<uint32_t> sizes(Classes::count());
    std::vector<std::pair<double, size_t>> ranks;  // of each class, with its size
    for (const Hit& hit : hits) {
        if (Classes::has(hit)) {
            ++sizes[Classes::of(hit)];
        } else {
            ranks.emplace_back(bm25(hit.hits, hit.words), 1);
        }
    }
    for (size_t i = 0; i < sizes.size(); ++i) {
        const Hit example = Classes::example(i);
        if (sizes[i] != 0) { ranks.emplace_back(bm25(example.hits, example.words), sizes[i]); }
    }
    std::ranges::sort(ranks);
    size_t reached = 0;
    for (const auto& [rank, size] : ranks) {
        reached += size;
        if (reached >= limit) { return rank; }
    }
    return ranks.empty() ? 0 : ranks.back().first;
}

std::vector<Ranked> best(const std::vector<Hit>& hits, size_t limit, const Bm25& bm25) {
    const double last = rankOfLast(hits, limit, bm25);
    std::vector<double> known(Classes::count());  // ranks by class; 0, which no class has, until computed
    std::vector<Ranked> ranked;
    for (const Hit& hit : hits) {
        double rank = 0;
        if (!Classes::has(hit)) {
            rank = bm25(hit.hits, hit.words);
        } else if (rank = known[Classes::of(hit)]; rank == 0) {
            rank = known[Classes::of(hit)] = bm25(hit.hits, hit.words);
        }
        if (rank <= last) { ranked.push_back({rank, hit.id}); }
    }
    // Sort equal ranks by id: FTS5 finds files in the order of their ids, and SQLite keeps that order.
    std::ranges::sort(ranked);
    ranked.resize(std::min(limit, ranked.size()));
    return ranked;
}

Letters lettersOf(const Database& database, const std::string& expression) {
    // Only one term in matchExpression's form can be short. Three plain letters or digits are always too many.
    if (!expression.starts_with('"') || !expression.ends_with("\"*")) { return 0; }
    const auto isPlain = [](char c) { return (c >= '0' && c <= '9') || ((c | 0x20) >= 'a' && (c | 0x20) <= 'z'); };
    if (std::ranges::count(expression, '"') != 2 || std::ranges::count_if(expression, isPlain) > 2) { return 0; }
    Tokenizer tokenizer(database);
    int words = 0;
    Beginning letters;
    tokenizer.eachWord(expression, [&](std::string_view word) {
        ++words;
        letters = beginning(word);
    });
    if (words != 1 || !letters.whole) { return 0; }
    return letters.two != 0 ? letters.two : letters.one;
}

// All hits; none when a read fails or there are too many blocks.
std::optional<std::vector<Hit>> findHits(const Database& database, Letters letters) {
    std::vector<Hit> hits;
    Statement changedIds(database, "SELECT id FROM short_changed");
    std::vector<int64_t> changed;
    while (changedIds.step()) { changed.push_back(changedIds.integer(0)); }
    Statement newest(database, "SELECT max(id) FROM short_hits");
    const int64_t lastBlock = newest.step() ? newest.integer(0) >> lettersBits : 0;
    Statement select(database, "SELECT hits FROM short_hits WHERE id = ?");
    if (!changedIds.ok() || !newest.ok() || lastBlock >= maxBlocks) { return std::nullopt; }
    for (int64_t block = 0; block <= lastBlock; ++block) {
        const size_t before = hits.size();
        if (select.bind(hitsKey(block, letters)).step()) { unpackHits(select.blob(0), block, hits); }
        if (!select.ok()) { return std::nullopt; }
        const auto next = std::ranges::lower_bound(changed, block * filesABlock);
        if (next == changed.end() || *next >= (block + 1) * filesABlock) { continue; }
        const auto stale = [&](const Hit& hit) { return std::ranges::binary_search(changed, hit.id); };
        hits.erase(std::remove_if(hits.begin() + int64_t(before), hits.end(), stale), hits.end());
    }
    Tokenizer tokenizer(database);
    const auto add = [&](int64_t id, uint32_t words, const auto& counts) {
        const auto found = counts.find(letters);
        if (found != counts.end()) { hits.push_back({id, found->second, words}); }
    };
    if (!eachChangedFile(database, tokenizer, INT64_MIN, INT64_MAX, add)) { return std::nullopt; }
    return hits;
}

bool tooMuchChanged(const Database& database, const Totals& totals) {
    constexpr int64_t always = 64, share = 256;  // reading a changed file takes as long as ranking some hundred
    Statement count(database, "SELECT count(*) FROM short_changed");
    return !count.step() || count.integer(0) > std::max(always, totals.files / share);
}

}  // namespace

bool isShort(const Database& database, const std::string& expression) {
    return lettersOf(database, expression) != 0;
}

Ranking rankShort(const Database& database, const std::string& expression, int limit,
                  const std::optional<FileSet>& within) {
    const Letters letters = lettersOf(database, expression);
    const Totals totals = readTotals(database);
    if (letters == 0 || limit < 0 || tooMuchChanged(database, totals)) { return std::nullopt; }
    std::optional<std::vector<Hit>> hits = findHits(database, letters);
    if (!hits) { return std::nullopt; }
    const Bm25 bm25(totals, int64_t(hits->size()));
    if (within) {
        std::erase_if(*hits, [&](const Hit& hit) {
            return hit.id < 0 || size_t(hit.id) >= within->size() || !(*within)[size_t(hit.id)];
        });
    }
    return best(*hits, size_t(limit), bm25);
}

}  // namespace brindlehum
