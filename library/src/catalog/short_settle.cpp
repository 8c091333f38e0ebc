// Short settle: merges changed files into their blocks, the blocks with the most changes first.
#include "catalog/short_settle.h"

#include <algorithm>
#include <map>
#include <set>
#include <vector>

#include "catalog/file_words.h"

namespace brindlehum {

namespace {

struct Block {
    int64_t number;
    int64_t first() const { return number * filesABlock; }
    int64_t last() const { return first() + filesABlock - 1; }
};

std::vector<Block> mostChanged(const Database& database, int most) {
    Statement select(
        database,
        "SELECT id / ? FROM short_changed WHERE id BETWEEN 0 AND ? GROUP BY 1 ORDER BY count(*) DESC LIMIT ?");
    select.bind(filesABlock, maxFileId, most);
    std::vector<Block> blocks;
    while (select.step()) { blocks.push_back({select.integer(0)}); }
    return blocks;
}

std::set<int64_t> changedIn(const Database& database, const Block& block) {
    Statement select(database, "SELECT id FROM short_changed WHERE id BETWEEN ? AND ?");
    select.bind(block.first(), block.last());
    std::set<int64_t> ids;
    while (select.step()) { ids.insert(select.integer(0)); }
    return ids;
}

using HitsByLetters = std::map<Letters, std::vector<Hit>>;

// Collects the block's new hits by beginnings: those of its unchanged files, plus those of the changed ones.
bool collectHits(const Database& database, const Block& block, HitsByLetters& touched) {
    const std::set<int64_t> changed = changedIn(database, block);
    Tokenizer tokenizer(database);
    const auto add = [&](int64_t id, uint32_t words, const auto& hits) {
        for (const auto& [letters, count] : hits) { touched[letters].push_back({id, count, words}); }
    };
    if (!eachChangedFile(database, tokenizer, block.first(), block.last(), add)) { return false; }
    Statement select(database, "SELECT id, hits FROM short_hits WHERE id BETWEEN ? AND ?");
    select.bind(hitsKey(block.number, 0), hitsKey(block.number + 1, 0) - 1);
    std::vector<Hit> hits;
    while (select.step()) {
        const auto letters = Letters(select.integer(0) - hitsKey(block.number, 0));
        hits.clear();
        unpackHits(select.blob(1), block.number, hits);
        const size_t before = hits.size();
        std::erase_if(hits, [&](const Hit& hit) { return changed.contains(hit.id); });
        const auto added = touched.find(letters);
        if (added != touched.end()) {
            hits.insert(hits.end(), added->second.begin(), added->second.end());
            std::ranges::sort(hits, {}, &Hit::id);
            added->second.swap(hits);
        } else if (hits.size() != before) {
            touched[letters].swap(hits);
        }
    }
    return select.ok();
}

bool settle(const Database& database, const Block& block) {
    HitsByLetters touched;
    if (!collectHits(database, block, touched)) { return false; }
    Statement store(database, "INSERT INTO short_hits VALUES (?, ?) ON CONFLICT DO UPDATE SET hits = excluded.hits");
    Statement drop(database, "DELETE FROM short_hits WHERE id = ?");
    for (const auto& [letters, hits] : touched) {
        const int64_t key = hitsKey(block.number, letters);
        if (hits.empty()) {
            if (!drop.bind(key).run()) { return false; }
            continue;
        }
        const std::string packed = packHits(hits);
        store.bind(key);
        store.setBlob(2, packed);
        if (!store.run()) { return false; }
    }
    return Statement(database, "DELETE FROM short_changed WHERE id BETWEEN ? AND ?")
        .bind(block.first(), block.last())
        .run();
}

}  // namespace

bool settleShortHits(const Database& database, int64_t allowed, int maxBlocks) {
    Statement count(database, "SELECT count(*) FROM short_changed");
    if (!count.step() || count.integer(0) <= allowed) { return false; }
    const std::vector<Block> blocks = mostChanged(database, maxBlocks);
    return !blocks.empty() && std::ranges::all_of(blocks, [&](const Block& block) { return settle(database, block); });
}

}  // namespace brindlehum
