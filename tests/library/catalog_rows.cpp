// Rows of the catalog: written whole or not at all, and read back even with damaged metadata.
#include <nlohmann/json.hpp>

#include "base/error.h"
#include "catalog_test.h"

namespace brindlehum::test {
namespace {

using CatalogRows = CatalogTest;
using Lines = std::vector<std::string>;

AudioFileInfo twoSeconds() {
    AudioFileInfo info;
    info.sampleRate = 48000;
    info.frames = 96000;
    info.channels = 2;
    info.bitDepth = 24;
    info.codec = "PCM";
    return info;
}

TEST_F(CatalogRows, AreReadBackAsWritten) {
    Catalog catalog(file);
    SoundMeta meta;
    for (const SoundMeta::Tag& tag : SoundMeta::ixmlTags) {
        meta.*tag.field = "a \"" + std::string(tag.key) + "\"\\\n\x01/";
    }
    meta.description = "t\u00FCr \u96E8 \U0001F600";
    meta.category = "Gr\u00FC\u00DFe";
    meta.rating = -1234567890;
    put(catalog, "/lib/a b/c/DOORWood_Slam_x.y.wav", "/lib", meta, twoSeconds());
    const Catalog::Row expected{"/lib/a b/c/DOORWood_Slam_x.y.wav", "/lib", 2, 48000, 2, 24, "PCM", meta, 1.5};
    EXPECT_EQ(catalog.row(expected.path), expected);
    EXPECT_EQ(catalog.search({.query = "slam"}, 10), std::vector{expected});
    EXPECT_EQ(catalog.search({.category = "GR\u00DCSSE"}, 10), std::vector{expected});

    PlainDatabase plain(file);
    EXPECT_EQ(plain.rows("SELECT size, mtime, duration, category, library, rating, indexed > 1.7e9 FROM files"),
              Lines{"10|1.5|2.0|GR\u00DCSSE|" + meta.library + "|-1234567890|1"});
    EXPECT_EQ(plain.rows("SELECT rowid = (SELECT id FROM files), name, folders, body FROM fts"),
              Lines{"1|DOORWood Slam x.y| a b c|" + meta.searchText()});
}

TEST_F(CatalogRows, OfOneTransactionAreAllWrittenOrNone) {
    Catalog catalog(file);
    const auto failing = [&] {
        catalog.upsert("/lib/a.wav", "/lib", {1, 1}, {}, {});
        throw std::runtime_error("midway");
    };
    EXPECT_THROW(catalog.write(failing), std::runtime_error);
    EXPECT_EQ(catalog.facets({}).total, 0);
    put(catalog, "/lib/b.wav", "/lib");
    PlainDatabase plain(file);
    EXPECT_EQ(plain.rows("SELECT name FROM fts"), Lines{"b"});
    // A row without its index entry would never be found, and its stamp would keep the next scan from reading the file.
    plain.exec("DROP TABLE fts");
    EXPECT_THROW(put(catalog, "/lib/c.wav", "/lib"), Error);
    EXPECT_EQ(plain.rows("SELECT path FROM files"), Lines{"/lib/b.wav"});
}

TEST_F(CatalogRows, StayInResultsWhenTheirMetadataIsDamaged) {
    Catalog catalog(file);
    SoundMeta meta;
    meta.description = "sound";
    meta.rating = 3;
    put(catalog, "/lib/a.wav", "/lib", meta);
    PlainDatabase plain(file);
    const std::string whole = plain.rows("SELECT meta FROM files")[0];
    const auto changed = [&](const char* part, const char* other) {
        std::string json = whole;
        return json.replace(json.find(part), std::string(part).size(), other);
    };
    const std::pair<std::string, SoundMeta> table[] = {
        {whole, meta},
        {nlohmann::json::parse(whole).dump(2), meta},
        {changed("\"rating\":3", "\"rating\":3,\"more\":[1]"), meta},
        {changed("\"rating\":3", "\"rating\":\"3\""), {}},
        {changed("sound", "so\xFFund"), {}},
        {changed("sound", "so\\xund"), {}},
        {whole + "}", {}},
        {"", {}},
    };
    for (const auto& [json, expected] : table) {
        plain.rows("UPDATE files SET meta = ?", {json});
        const std::vector<Catalog::Row> rows = catalog.search({}, 9);
        ASSERT_EQ(rows.size(), 1U) << json;
        EXPECT_EQ(rows[0].meta, expected) << json;
    }
}

TEST(CatalogRow, SummarisesItsFormat) {
    const std::pair<Catalog::Row, const char*> table[] = {
        {{"", "", 0, 48000, 2, 24, "PCM", {}}, "48 kHz \u00B7 24-bit \u00B7 2 ch"},
        {{"", "", 0, 44100, 1, 0, "MP3", {}}, "44.1 kHz \u00B7 MP3 \u00B7 mono"}};
    for (const auto& [row, summary] : table) { EXPECT_EQ(row.formatSummary(), summary); }
}

}  // namespace
}  // namespace brindlehum::test
