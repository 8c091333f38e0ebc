// What the parts of the library stand on in a test: a folder of small sounds with its catalog, settings in memory, a
// main loop whose clock the test owns, and a home folder of its own.
#pragma once

#include <cstdlib>

#include "library/model/browser_entry.h"
#include "library/model/real_paths.h"
#include "platform/background.h"
#include "settings/settings_store.h"
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

class LibraryPart : public SoundFolder {
protected:
    void SetUp() override {
        SoundFolder::SetUp();
        ::setenv("HOME", (home / "home").c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", (home / "home" / ".config").c_str(), 1);
    }
    void setRoots(const std::vector<std::string>& roots) {
        store.change([&](AppSettings& settings) { settings.libraryRoots = roots; });
    }
    const std::vector<std::string>& roots() { return store.value().libraryRoots; }
    // Lets everything that was begun come back.
    template <class Busy>
    void settleWhile(Busy isBusy) {
        ASSERT_TRUE(loop.runUntil([&] { return !isBusy(); }, 100));
    }
    Catalog::Row catalogRow(const fs::path& file) { return catalog.row(file.string()).value(); }

    MemoryDefaults defaults;
    SettingsStore store{defaults};
    ManualMainLoop loop;
    RealPaths realPaths;
    Background editQueue{loop, "Brindlehum.edits"};
};

}  // namespace brindlehum::test
