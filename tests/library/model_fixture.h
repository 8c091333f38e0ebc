// A LibraryModel over a folder of small sounds, its settings in memory and its user's home in a temporary folder.
#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "library/meta/meta_io.h"
#include "library/model/library_model.h"
#include "library/team/change_log.h"
#include "sound_folder.h"
#include "support/platform/manual_main_loop.h"

namespace brindlehum::test {

inline std::vector<std::string> names(const std::vector<BrowserEntry>& entries) {
    std::vector<std::string> names;
    for (const BrowserEntry& entry : entries) {
        names.push_back(entry.url.filename().string() + (entry.isFolder ? "/" : ""));
    }
    return names;
}

class Model : public SoundFolder {
protected:
    void SetUp() override {
        SoundFolder::SetUp();
        ::setenv("HOME", (home / "home").c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", (home / "home" / ".config").c_str(), 1);
    }
    SettingsStore& settingsWith(const std::vector<std::string>& roots) {
        store.change([&](AppSettings& settings) { settings.libraryRoots = roots; });
        return store;
    }
    // Scanned and listed.
    void make(const std::vector<std::string>& roots) {
        model = std::make_unique<LibraryModel>(settingsWith(roots), loop, catalogPath);
        settle();
    }
    // Lets everything that was begun come back.
    void settle() {
        ASSERT_TRUE(loop.runUntil([this] { return !model->isBusy(); }, 100));
    }
    void search() {
        loop.advance(LibraryModel::debounceSeconds);
        settle();
    }
    Catalog::Row catalogRow(const fs::path& file) { return model->catalog()->row(file.string()).value(); }

    fs::path catalogPath = home / "data" / "Catalog.sqlite";
    MemoryDefaults defaults;
    SettingsStore store{defaults};
    ManualMainLoop loop;
    std::unique_ptr<LibraryModel> model;
};

}  // namespace brindlehum::test
