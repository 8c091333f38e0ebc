// SettingsStore: when it writes, when it announces, and what it reads.
#include "settings/settings_store.h"

namespace brindlehum {
namespace {

constexpr const char* key = "settings.v1";

TEST(SettingsStore, MissingOrUnreadableRecordGivesDefaultsAndWritesNothing) {
    const std::string deep(100000, '[');
    for (const std::string stored : {"", "[]", "null", "{\"autoPlay\":", "{} x", "{\"a\":\"\xff\"}", deep.c_str()}) {
        MemoryDefaults defaults;
        if (!stored.empty()) { defaults.set(key, stored); }
        const int before = defaults.writes;
        SettingsStore store(defaults);
        EXPECT_EQ(store.activeProfile().name, "Room 9.1.6");
        EXPECT_EQ(defaults.writes, before);
        store.change([](AppSettings& s) { s.expertMode = true; });
        EXPECT_EQ(AppSettings::decode(*defaults.data(key)), store.value());
    }
}

TEST(SettingsStore, DifferenceIsStoredBeforeItIsAnnounced) {
    MemoryDefaults defaults;
    SettingsStore store(defaults);
    std::vector<std::pair<bool, bool>> seen;
    QObject::connect(&store, &SettingsStore::changed, [&](const AppSettings& now, const AppSettings& before) {
        EXPECT_EQ(AppSettings::decode(*defaults.data(key)), now);
        EXPECT_EQ(store.value(), now);
        seen.emplace_back(now.autoPlay, before.autoPlay);
    });
    store.change([](AppSettings& s) { s.autoPlay = false; });
    store.change([](AppSettings& s) { s.profiles[1].trimsDB[0] = -3; });
    store.change([](AppSettings& s) { s.upmix.params.stage += 1; });
    EXPECT_EQ(defaults.writes, 3);
    store.setValue(AppSettings(store.value()));
    store.change([](AppSettings& s) { s.profiles[1].trimsDB[0] = -3; });
    EXPECT_EQ(defaults.writes, 3) << "an equal record writes nothing";
    EXPECT_EQ(seen, (std::vector<std::pair<bool, bool>>{{false, true}, {false, false}, {false, false}}));
    EXPECT_EQ(SettingsStore(defaults).value(), store.value());
}

TEST(SettingsStore, IdOfAMissingProfileStaysStored) {
    MemoryDefaults defaults;
    SettingsStore store(defaults);
    const UUID gone = store.value().profiles[2].id;
    store.change([&](AppSettings& s) { s.activeProfileID = gone; });
    EXPECT_EQ(store.activeProfile().kind, OutputProfile::Kind::headphones);
    store.change([](AppSettings& s) { s.profiles.pop_back(); });
    SettingsStore next(defaults);
    EXPECT_EQ(next.activeProfile().name, "Room 9.1.6");
    EXPECT_EQ(next.value().activeProfileID, gone);
}

TEST(SettingsStore, RecordThatCannotBeEncodedHoldsInMemoryOnly) {
    MemoryDefaults defaults;
    SettingsStore store(defaults);
    store.change([](AppSettings& s) { s.monoToCenter = false; });
    const auto stored = defaults.data(key);
    int announced = 0;
    QObject::connect(&store, &SettingsStore::changed, [&] { ++announced; });
    store.change([](AppSettings& s) { s.upmix.params.stage = double(INFINITY); });
    EXPECT_EQ(defaults.data(key), stored);
    EXPECT_EQ(announced, 1);
}

TEST(SettingsStore, NamesThatAreNotUtf8AreStoredWithAllTheRest) {
    MemoryDefaults defaults;
    SettingsStore store(defaults);
    const std::vector<std::string> roots = {"/caf\xE9", "/\xE9/caf\xC3\xA9", "/s//E9", "/plain"};
    store.change(
        [&](AppSettings& s) { s.libraryRoots = roots, s.pullsFolder = s.ytDlpPath = s.hrtfFile = "/p\xFF/x"; });
    store.change([](AppSettings& s) { s.profiles[0].deviceUID = "usb\xFF", s.monoToCenter = false; });
    const AppSettings read = SettingsStore(defaults).value();
    EXPECT_EQ(read.libraryRoots, roots);
    EXPECT_EQ(read.pullsFolder, "/p\xFF/x");
    EXPECT_EQ(read.ytDlpPath, "/p\xFF/x");
    EXPECT_EQ(read.hrtfFile, "/p\xFF/x");
    EXPECT_EQ(read.profiles[0].deviceUID, "usb\xEF\xBF\xBD");
    EXPECT_FALSE(read.monoToCenter);
}

TEST(SettingsStore, ReceiverMayChangeTheSettingsAgain) {
    MemoryDefaults defaults;
    SettingsStore store(defaults);
    QObject::connect(&store, &SettingsStore::changed, [&](const AppSettings& now, const AppSettings&) {
        if (now.expertMode) { return; }
        store.change([](AppSettings& s) { s.expertMode = true; });
        EXPECT_FALSE(now.expertMode) << "the record in hand must not change under the receiver";
    });
    store.change([](AppSettings& s) { s.ytDlpPath = "/opt/get"; });
    EXPECT_TRUE(AppSettings::decode(*defaults.data(key))->expertMode);
}

}  // namespace
}  // namespace brindlehum
