// The stored record: what comes back from old, newer and damaged texts, and what is written.
#include "settings/app_settings.h"

#include <nlohmann/json.hpp>
#include <set>

namespace brindlehum {
namespace {

using nlohmann::ordered_json;

constexpr auto headphones = OutputProfile::Kind::headphones;
constexpr const char* someID = "0F3C2D1E-4B5A-4978-8695-A4B3C2D1E0FF";
constexpr const char* goodProfile =
    R"({"id":"0f3c2d1e-4b5a-4978-8695-a4b3c2d1e0ff","name":"Van","kind":"headphones","deviceUID":"alsa.usb",
        "layout":"l714","outputs":[2,-1,0],"trimsDB":[0,-1.5],"headphoneLeft":4,"headphoneRight":5})";

// A good profile and another, one field of which ("key:json") is different, or left out.
std::string withProfileField(const std::string& field) {
    const size_t colon = field.find(':');
    ordered_json profile = ordered_json::parse(goodProfile);
    profile.erase(field.substr(0, colon));
    if (colon + 1 < field.size()) { profile[field.substr(0, colon)] = ordered_json::parse(field.substr(colon + 1)); }
    return R"({"autoPlay":false,"profiles":[)" + std::string(goodProfile) + "," + profile.dump() + "]}";
}

// The default record but for the ids, which are new at each start.
void expectFactoryProfiles(const std::vector<OutputProfile>& profiles) {
    ASSERT_EQ(profiles.size(), 3U);
    std::vector<int> sixteen(16);
    std::iota(sixteen.begin(), sixteen.end(), 0);
    const auto kind = OutputProfile::Kind::speakers;
    const OutputProfile wanted[] = {
        {profiles[0].id, "Room 9.1.6", kind, {}, LayoutID::l916, sixteen, std::vector<double>(16), 0, 1, true},
        {profiles[1].id, "Nearfield", kind, {}, LayoutID::stereo, {0, 1}, {0, 0}, 0, 1, true},
        {profiles[2].id, "Headphones", headphones, {}, LayoutID::stereo, {0, 1}, {0, 0}, 0, 1, true}};
    for (size_t i = 0; i < 3; ++i) { EXPECT_EQ(profiles[i], wanted[i]) << wanted[i].name; }
    EXPECT_EQ(std::set<UUID>({profiles[0].id, profiles[1].id, profiles[2].id}).size(), 3U);
}

TEST(AppSettings, KeyThatIsUnreadableKeepsItsDefaultAlone) {
    const std::pair<const char*, std::function<void(AppSettings&)>> cases[] = {
        // to what must come of the defaults
        {"{}", [](AppSettings&) {}},
        {R"({"autoPlay":"yes","finderPanel":false})", [](AppSettings& s) { s.finderPanel = false; }},
        {R"({"autoPlay":0,"expertMode":1,"monoToCenter":null})", [](AppSettings&) {}},
        {R"({"spacePlaysInFinder":false,"monoToCenter":false,"tempEditsBesideSource":false,"expertMode":true})",
         [](AppSettings& s) {
             s.spacePlaysInFinder = s.monoToCenter = s.tempEditsBesideSource = false, s.expertMode = true;
         }},
        {R"({"pullsFolder":7,"libraryRoots":["/a",3],"ytDlpPath":"/opt/get","hrtfFile":"/my.sofa"})",
         [](AppSettings& s) { s.ytDlpPath = "/opt/get", s.hrtfFile = "/my.sofa"; }},
        {R"({"pullsFolder":"/p \u00e9","libraryRoots":["/a","/b"],"newer":{"key":[1]}})",
         [](AppSettings& s) {
             s.pullsFolder = "/p \xC3\xA9", s.libraryRoots = {"/a", "/b"};
         }},
        {R"({"libraryRoots":{"0":"/a"},"activeProfileID":12,"profiles":"none","upmix":5})", [](AppSettings&) {}},
        {R"({"activeProfileID":"0f3c2d1e-4b5a-4978-8695-a4b3c2d1e0ff"})",
         [](AppSettings& s) { s.activeProfileID = UUID::parse(someID); }},
        {R"({"upmix":{"enabled":true,"preset":"hall"}})",
         [](AppSettings& s) {
             s.upmix = {true, UpmixPreset::hall, params(UpmixPreset::hall)};
         }},
        {R"({"upmixPresets":[5,{"name":""},{"name":"FILM"},{"name":"Bed","base":"film","params":{"roomMs":3}},
            {"name":"bed"},{"base":"hall"},{"name":"Wide","base":"hall","params":7}]})",
         [](AppSettings& s) {
             s.upmixPresets = {{"Bed", UpmixPreset::film, {.roomMs = 3}},
                               {"Wide", UpmixPreset::hall, params(UpmixPreset::hall)}};
         }}};
    for (const auto& [stored, change] : cases) {
        const std::optional<AppSettings> read = AppSettings::decode(stored);
        ASSERT_TRUE(read) << stored;
        expectFactoryProfiles(read->profiles);
        AppSettings wanted;
        wanted.profiles = read->profiles;
        change(wanted);
        EXPECT_EQ(*read, wanted) << stored;
    }
}

TEST(AppSettings, PullsGoToTheDefaultFolderInPlaceOfNone) {
    for (const auto& [stored, used] : {std::pair("/p", std::string("/p")),
                                       {"", AppSettings::defaultPullsFolder()},
                                       {"  ", AppSettings::defaultPullsFolder()},
                                       {"Pulls", AppSettings::defaultPullsFolder()}}) {
        AppSettings settings;
        settings.pullsFolder = stored;
        EXPECT_EQ(settings.pulls(), used) << stored;
    }
}

TEST(AppSettings, BadProfileFieldDropsTheListAndNothingElse) {
    for (const char* field : {"id:", "id:\"0f3c2d1e\"", "name:null", "kind:\"Speakers\"", "deviceUID:5",
                              "layout:\"22.2\"", "outputs:[0,1.5]", "outputs:[true]", "outputs:[4294967296]",
                              "outputs:{\"a\":1}", "trimsDB:[\"0\"]", "headphoneLeft:", "headphoneRight:\"1\""}) {
        const std::string stored = withProfileField(field);
        const std::optional<AppSettings> read = AppSettings::decode(stored);
        ASSERT_TRUE(read) << stored;
        expectFactoryProfiles(read->profiles);
        EXPECT_FALSE(read->autoPlay) << stored;
    }
    for (const char* field : {"deviceUID:", "deviceUID:null", "outputs:[]", "outputs:[3.0]", "later:1"}) {
        const std::string stored = withProfileField(field);
        ASSERT_EQ(AppSettings::decode(stored)->profiles.size(), 2U) << stored;
        const OutputProfile van{*UUID::parse(someID), "Van",     headphones, "alsa.usb", LayoutID::l714,
                                {2, -1, 0},           {0, -1.5}, 4,          5};
        EXPECT_EQ(AppSettings::decode(stored)->profiles[0], van) << stored;
    }
}

TEST(AppSettings, AnOlderProfileFollowsPositionsUnlessItsOutputsWereChosen) {
    for (const auto& [outputs, follows] : {std::pair("[0,1,2]", true), {"[1,0]", false}}) {
        const auto read = AppSettings::decode(withProfileField(std::string("outputs:") + outputs));
        ASSERT_TRUE(read);
        EXPECT_EQ(read->profiles[1].followsPositions, follows) << outputs;
    }
}

TEST(AppSettings, WrittenRecordReadsBackEqual) {
    AppSettings settings;
    settings.profiles[1] = {
        *UUID::parse(someID), "Van \"\\\xE2\x99\xAA", headphones, "a.b", LayoutID::l712, {5, -1}, {-0.1, 1e-300}, 7, 6};
    settings.activeProfileID = settings.profiles[1].id;
    settings.libraryRoots = {"/x", ""};
    settings.upmix.params.stage = 41.25;
    settings.upmix.own = "Bett & Bühne";
    settings.upmixPresets = {{"Bett & Bühne", UpmixPreset::game, settings.upmix.params}};
    settings.pullsAsFloat = true;
    settings.mediaShowsTitle = settings.generationSendsName = false;
    settings.generationAddress = "https://a.example", settings.generationHeader = "X-Key";
    settings.generationAgreed = settings.generationKeyed = "https://a.example:443";
    const ordered_json written = ordered_json::parse(settings.encode());
    EXPECT_EQ(written.size(), 21U);
    EXPECT_EQ(written["activeProfileID"], someID);
    EXPECT_FALSE(written["profiles"][0].contains("deviceUID"));
    EXPECT_EQ(AppSettings::decode(settings.encode()), settings);
}

TEST(UUID, TextGoesThereAndBack) {
    EXPECT_EQ(UUID::parse("0f3c2d1e-4b5a-4978-8695-a4b3c2d1e0ff")->string(), someID);
    const UUID id = UUID::random();
    EXPECT_EQ(UUID::parse(id.string()), id);
    for (const std::string text :
         {"", "{0F3C2D1E-4B5A-4978-8695-A4B3C2D1E0FF}", "0F3C2D1E-4B5A-4978-8695-A4B3C2D1E0FG"}) {
        EXPECT_FALSE(UUID::parse(text)) << text;
    }
}

}  // namespace
}  // namespace brindlehum
