// Rows of the catalog: what is written comes back, under one id, and goes with its root.
#include "catalog_test.h"

namespace brindlehum::test {
namespace {

using CatalogRows = CatalogTest;

TEST_F(CatalogRows, ComesBackAsWritten) {
    Catalog catalog(file);
    AudioFileInfo info;
    info.sampleRate = 48000;
    info.frames = 96000;
    info.channels = 2;
    info.bitDepth = 24;
    info.codec = "PCM";
    SoundMeta meta;
    meta.description = "Heavy \"door\"\\ \n t\u00FCr \u96E8";
    meta.category = "Doors";
    meta.rating = 4;
    put(catalog, "/lib/a/DOORWood_Slam.wav", "/lib", meta, info);
    const Catalog::Row expected{"/lib/a/DOORWood_Slam.wav", "/lib", 2, 48000, 2, 24, "PCM", meta};
    EXPECT_EQ(catalog.row(expected.path), expected);
    EXPECT_EQ(catalog.search({.query = "slam"}, 10), std::vector{expected});
    EXPECT_EQ(catalog.search({.category = "DOORS"}, 10), std::vector{expected});
}

}  // namespace
}  // namespace brindlehum::test
