// A catalog in a folder of its own, and rows to put into it.
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "library/catalog.h"

namespace brindlehum::test {

class CatalogTest : public testing::Test {
protected:
    void SetUp() override {
        std::string name = (std::filesystem::temp_directory_path() / "brindlehum-catalog-XXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder = name;
        file = folder / "made by the way" / "Catalog.sqlite";
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    // In a transaction of its own.
    static void put(Catalog& catalog, const std::string& path, const std::string& root, const SoundMeta& meta = {},
                    const std::optional<AudioFileInfo>& info = {}) {
        catalog.write([&] { catalog.upsert(path, root, {10, 1.5}, info, meta); });
    }

    std::filesystem::path folder, file;
};

inline std::vector<std::string> paths(const std::vector<Catalog::Row>& rows) {
    std::vector<std::string> all;
    for (const Catalog::Row& row : rows) all.push_back(row.path);
    return all;
}

}  // namespace brindlehum::test
