// Searches and facets compared with a plain twin and with SQLite's own statement on the same file, while the catalog
// and another program change it, settled and not.
#include <iterator>
#include <map>
#include <set>
#include <sstream>

#include "catalog_test.h"
#include "platform/natural_order.h"

namespace brindlehum::test {
namespace {

using Lines = std::vector<std::string>;

std::string joined(const Lines& words, const char* between) {
    std::string all;
    for (const std::string& word : words) { all.append(all.empty() ? "" : between).append(word); }
    return all;
}

Lines parted(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

std::string quoted(std::string text) {
    for (size_t at = 0; (at = text.find('\'', at)) != std::string::npos; at += 2) { text.insert(at, 1, '\''); }
    return "'" + text + "'";
}

// A blank before every word, in lower case.
std::string wordsOf(std::string text) {
    text.insert(0, 1, ' ');
    for (char& c : text) {
        if (c >= 0) { c = std::isalnum(c) != 0 ? char(std::tolower(c)) : ' '; }
    }
    return text;
}

// A file in the twin, with the words that find it.
struct Known {
    std::string root, category, library;
    int rating = 0;
    std::string words;
};

class CatalogSearch : public CatalogTest {
protected:
    void SetUp() override {
        const uint64_t seed = std::random_device()();
        std::printf("seed %llu\n", static_cast<unsigned long long>(seed));
        random_.seed(seed);
    }
    size_t draw(size_t below) { return random_() % below; }
    const std::string& any(const Lines& of) { return of[draw(of.size())]; }
    Lines some(const Lines& of, size_t least, size_t most) {
        Lines drawn(least + draw(most - least + 1));
        for (std::string& word : drawn) { word = any(of); }
        return drawn;
    }

    // Words that share beginnings of one and two letters, in several alphabets, none of them in upper case.
    const Lines words = parted(
        "d do door doors dog wood wo w8 a an ant 7 77 7b x zebra "
        "\u0434 \u0434\u043E\u043C \u0436\u0430 \u96E8 \u96E8\u5929");
    const Lines roots = {"/lib/one", "/lib/two", "/lib/it's"};
    const Lines categories = {"", "DOORS", "WOOD"}, libraries = {"", "Yard", "o'hara"};

    void writeSome(Catalog& catalog) {
        catalog.write([&] {
            for (size_t i = draw(40); i > 0; --i) {
                const std::string& root = any(roots);
                const Lines name = some(words, 1, 3), below = some(words, 0, 2),
                            body = some(words, 0, draw(20) == 0 ? 1100 : 8);
                const std::string path =
                    root + joined(below, "/").insert(0, below.empty() ? "" : "/") + "/" + joined(name, "_") + ".wav";
                if (draw(6) == 0) {
                    catalog.remove(path);
                    files.erase(path);
                    continue;
                }
                SoundMeta meta;
                meta.description = joined(body, " ");
                meta.category = any(categories);
                meta.library = any(libraries);
                meta.rating = int(draw(6));
                catalog.upsert(path, root, {1, 1}, {}, meta);
                const Lines text = {joined(name, " "), joined(below, " "), meta.description, meta.category,
                                    meta.library};
                files[path] = {root, meta.category, meta.library, meta.rating, wordsOf(joined(text, " "))};
            }
        });
    }
    // Writes as another program would that knows only the tables of files and texts.
    void writeForeign(PlainDatabase& plain) {
        const std::string path = any(roots) + "/foreign " + std::to_string(draw(1000)) + ".wav";
        if (files.contains(path)) { return; }
        const Lines ids = {"NULL", "5000", "9000", "-7", "3000000000000000"};
        const std::string word = any(words), root = path.substr(0, path.rfind('/')), id = any(ids);
        if (!plain.rows("SELECT id FROM files WHERE id IS " + id).empty()) { return; }
        plain.exec("BEGIN");
        plain.rows(
            "INSERT INTO files (id, path, root, meta, category, rating) VALUES (" + id + ", ?, ?, '{}', 'WOOD', 0)",
            {path, root});
        plain.rows("INSERT INTO fts (rowid, name) VALUES (last_insert_rowid(), ?)", {word});
        plain.exec("COMMIT");
        files[path] = {root, "WOOD", "", 0, wordsOf(word)};
    }

    Catalog::Filter drawFilter() {
        Catalog::Filter filter;
        for (size_t i = draw(4) == 0 ? draw(4) : 1; i > 0; --i) {
            std::string word = any(words);
            if (draw(2) == 0) { word.resize(std::min(word.size(), word[0] < 0 ? 2 * (1 + draw(2)) : 1 + draw(2))); }
            if (word[0] == '\xE9') { word = "\u96E8"; }
            if (draw(4) == 0) {
                std::ranges::transform(word, word.begin(), [](char c) { return c > 0 ? char(std::toupper(c)) : c; });
            }
            filter.query += (draw(8) == 0 ? " -" : " ") + word;
        }
        if (draw(4) == 0) { filter.category = categories[1 + draw(2)]; }
        if (draw(6) == 0) { filter.library = libraries[1 + draw(2)]; }
        filter.roots = draw(3) == 0 ? roots : some(roots, 0, 2);
        if (draw(6) == 0) { filter.minRating = int(draw(5)); }
        return filter;
    }
    static bool passes(const Known& known, const Catalog::Filter& filter) {
        return (!filter.category || known.category == *filter.category) &&
               (!filter.library || known.library == *filter.library) && known.rating >= filter.minRating &&
               (filter.roots.empty() || std::ranges::count(filter.roots, known.root) > 0);
    }
    // The files that a query of single words matches, found without any index.
    std::set<std::string> twin(const Catalog::Filter& filter) {
        Lines wanted, unwanted;
        for (const std::string& word : parted(filter.query)) {
            (word[0] == '-' ? unwanted : wanted).push_back(wordsOf(word.substr(word[0] == '-' ? 1 : 0)));
        }
        std::set<std::string> found;
        for (const auto& [path, known] : files) {
            const auto holds = [&of = known.words](const std::string& word) {
                return of.find(word) != std::string::npos;
            };
            const bool matches =
                wanted.empty() || (std::ranges::all_of(wanted, holds) && std::ranges::none_of(unwanted, holds));
            if (matches && passes(known, filter)) { found.insert(path); }
        }
        return found;
    }
    static Lines ranked(PlainDatabase& plain, const Catalog::Filter& filter, int limit) {
        const auto match = Catalog::matchExpression(filter.query);
        Lines rooted, clauses = {"f.rating >= " + std::to_string(filter.minRating)};
        if (match) { clauses.push_back("fts MATCH " + quoted(*match)); }
        if (filter.category) { clauses.push_back("f.category = " + quoted(*filter.category)); }
        if (filter.library) { clauses.push_back("f.library = " + quoted(*filter.library)); }
        for (const std::string& root : filter.roots) { rooted.push_back(quoted(root)); }
        if (!rooted.empty()) { clauses.push_back("f.root IN (" + joined(rooted, ",") + ")"); }
        const std::string from = match ? "files f JOIN fts ON fts.rowid = f.id" : "files f";
        const std::string order = match ? "bm25(fts, 4.0, 1.0, 2.0)" : "f.path";
        const std::string below = " FROM " + from + " WHERE " + joined(clauses, " AND ") + " ORDER BY " + order +
                                  " LIMIT " + std::to_string(limit);
        if (!match) { return plain.rows("SELECT f.path" + below); }
        return tiesByName(plain.rows("SELECT f.path, printf('%!.17g', " + order + ")" + below));
    }
    // The paths of rows "path|rank", with equal ranks in natural order.
    static Lines tiesByName(const Lines& rows) {
        const QCollator collator = naturalCollator();
        std::map<double, std::vector<std::string>> byRank;
        for (const std::string& row : rows) {
            byRank[std::stod(row.substr(row.rfind('|') + 1))].push_back(row.substr(0, row.rfind('|')));
        }
        Lines sorted;
        for (auto& [rank, tied] : byRank) {
            std::ranges::sort(tied, [&](const std::string& a, const std::string& b) {
                const auto name = [](const std::string& path) {
                    return QString::fromStdString(std::filesystem::path(path).filename());
                };
                const int order = collator.compare(name(a), name(b));
                return order != 0 ? order < 0 : a < b;
            });
            sorted.insert(sorted.end(), tied.begin(), tied.end());
        }
        return sorted;
    }
    void checkFacets(Catalog& catalog, const Lines& of) {
        std::map<std::string, int64_t> byCategory, byLibrary;
        int64_t total = 0;
        for (const auto& [path, known] : files) {
            if (!passes(known, {.roots = of})) { continue; }
            ++total;
            if (!known.category.empty()) { ++byCategory[known.category]; }
            if (!known.library.empty()) { ++byLibrary[known.library]; }
        }
        const Catalog::Facets facets = catalog.facets(of);
        EXPECT_EQ(facets.total, total);
        using Map = std::map<std::string, int64_t>;
        EXPECT_EQ(Map(facets.categories.begin(), facets.categories.end()), byCategory);
        EXPECT_EQ(Map(facets.libraries.begin(), facets.libraries.end()), byLibrary);
        EXPECT_TRUE(
            std::ranges::is_sorted(facets.categories, std::greater(), [](const auto& count) { return count.second; }));
    }

    std::mt19937_64 random_;
    std::map<std::string, Known> files;
};

TEST_F(CatalogSearch, FindsTheFilesOfAPlainTwinInTheOrderOfSQLite) {
    Catalog catalog(file);
    PlainDatabase plain(file);
    for (int round = 0; round < 60; ++round) {
        writeSome(catalog);
        if (draw(3) == 0) { writeForeign(plain); }
        if (draw(4) == 0) { catalog.settle(); }
        if (round == 40) {
            catalog.removeRoot(roots[1]);
            std::erase_if(files, [&](const auto& entry) { return entry.second.root == roots[1]; });
        }
        for (int i = 0; i < 12; ++i) {
            const Catalog::Filter filter = drawFilter();
            const int limit = draw(3) == 0 ? int(draw(20)) : 2000;
            const Lines found = paths(catalog.search(filter, limit));
            ASSERT_EQ(found, ranked(plain, filter, limit)) << "round " << round << " query" << filter.query;
            if (limit < 2000) { continue; }
            ASSERT_EQ(std::set(found.begin(), found.end()), twin(filter)) << filter.query;
        }
        checkFacets(catalog, some(roots, 0, 2));
    }
    EXPECT_EQ(plain.rows("SELECT count(*) FROM fts WHERE rowid NOT IN (SELECT id FROM files)"), Lines{"0"});
    // A small limit ranks all files before it looks at their roots.
    for (int i = 0; i < 60; ++i) {
        const Catalog::Filter filter{.query = any(words).substr(0, 1), .roots = some(roots, 1, 2)};
        const int limit = 1 + int(draw(4));
        ASSERT_EQ(paths(catalog.search(filter, limit)), ranked(plain, filter, limit)) << filter.query;
    }
    // An index entry without its file, as another program may leave it, counts in the ranking but isn't found.
    plain.exec("DELETE FROM files WHERE id % 3 = 0");
    for (const char* query : {"d", "do", "door", "w"}) {
        EXPECT_EQ(paths(catalog.search({.query = query}, 2000)), ranked(plain, {.query = query}, 2000)) << query;
    }
}

TEST_F(CatalogSearch, UnderstandsPhrasesAlternativesFieldsAndPartsOfWords) {
    Catalog catalog(file);
    const auto add = [&](const std::string& name, const std::string& description, const std::string& keywords) {
        SoundMeta meta;
        meta.description = description;
        meta.keywords = keywords;
        put(catalog, "/l/" + name + ".wav", "/l", meta);
    };
    add("Doorslam 10", "heavy wooden", "metal, sub-bass");
    add("Doorslam 2", "heavy wooden", "metal, sub-bass");
    add("Rain", "metal roof, wet street", "weather");
    add("Gate", "street, wet", "Metallic");
    const std::pair<std::string, Lines> table[] = {
        {"heavy & wooden", {"Doorslam 2", "Doorslam 10"}},  // equal ranks
        {"\"wet street\"", {"Rain"}},
        {"\"we street\"", {}},
        {"rain OR gate", {"Gate", "Rain"}},
        {"wet rain OR nothing", {"Rain"}},
        {"keywords:metal", {"Doorslam 2", "Doorslam 10", "Gate"}},
        {"keywords:\"metal\" OR rain", {"Doorslam 2", "Doorslam 10", "Rain"}},
        {"keywords:sub-bass", {"Doorslam 2", "Doorslam 10"}},
        {"keywords:\"metal,\n\nsub\"", {"Doorslam 2", "Doorslam 10"}},
        {"metal -keywords:metal", {"Rain"}},
        {"name:rain", {"Rain"}},
        {"name:metal", {}},
        {"SLAM", {"Doorslam 2", "Doorslam 10"}},
        {"eat", {"Rain"}},
        {"la", {}},  // too short for a part
        {"slam weather", {}},
    };
    for (const auto& [query, names] : table) {
        Lines found;
        for (const std::string& path : paths(catalog.search({.query = query}, 2000))) {
            found.push_back(std::filesystem::path(path).stem());
        }
        // The table gives the files of one rank in natural order; the order of the ranks is FTS5's.
        EXPECT_THAT(found, testing::UnorderedElementsAreArray(names)) << query;
        const auto two = std::ranges::find(found, "Doorslam 2"), ten = std::ranges::find(found, "Doorslam 10");
        EXPECT_TRUE(two == found.end() || two < ten) << query;
    }
}

TEST_F(CatalogSearch, StepsAsideFromTablesThatRankOtherwise) {
    for (int i = 0; i < 20; ++i) {
        Catalog catalog(file);
        writeSome(catalog);
        catalog.settle();
    }
    PlainDatabase plain(file);
    plain.exec("UPDATE short_hits SET hits = (SELECT hits FROM short_hits ORDER BY length(hits) DESC LIMIT 1)");
    Catalog catalog(file);
    for (const char* query : {"d", "do", "w", "7"}) {
        EXPECT_EQ(paths(catalog.search({.query = query}, 2000)), ranked(plain, {.query = query}, 2000)) << query;
    }
}

// A catalog without our own tables gets them when it is opened.
TEST_F(CatalogSearch, AddsItsTablesToACatalogWithoutThem) {
    {
        Catalog catalog(file);
        for (int i = 0; i < 10; ++i) { writeSome(catalog); }
    }
    PlainDatabase plain(file);
    for (const std::string& trigger : plain.rows("SELECT name FROM sqlite_master WHERE type = 'trigger'")) {
        plain.exec("DROP TRIGGER " + trigger);
    }
    for (const char* table : {"file_counts", "short_hits", "short_changed"}) {
        plain.exec(std::string("DROP TABLE ") + table);
    }
    plain.exec("PRAGMA user_version = 0");
    Catalog catalog(file);
    checkFacets(catalog, {});
    for (const bool settled : {false, true}) {
        if (settled) { catalog.settle(); }
        for (const char* query : {"d", "do", "w", "a"}) {
            EXPECT_EQ(paths(catalog.search({.query = query}, 2000)), ranked(plain, {.query = query}, 2000)) << query;
        }
    }
}

}  // namespace
}  // namespace brindlehum::test
