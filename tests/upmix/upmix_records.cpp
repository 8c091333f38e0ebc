// Upmix settings as they are stored, and when an upmix is offered.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "upmix/upmix_params.h"
#include "upmix/upmix_planner.h"

namespace brindlehum {
namespace {

using nlohmann::json;
using enum SpeakerID;

// A record with every field off its initial value, so that a field that is lost or swapped on the way shows.
TEST(UpmixRecords, EveryFieldSurvivesARoundTrip) {
    json odd = UpmixParams{};
    EXPECT_EQ(odd.size(), 20U);
    double value = 0.5;
    for (auto& [key, field] : odd.items()) {
        if (field.is_number()) { field = value += 0.125; }
    }
    odd["lfe"] = "split";
    odd["exact"] = true;
    EXPECT_EQ(json(odd.get<UpmixParams>()), odd);
    for (const UpmixPreset preset : allUpmixPresets) { EXPECT_EQ(upmixPresetFromRaw(rawValue(preset)), preset); }
    EXPECT_EQ(upmixPresetFromRaw("Music"), std::nullopt);
}

TEST(UpmixRecords, UnreadablePartsGetTheirInitialValuesOrThePresets) {
    const UpmixParams music = params(UpmixPreset::music);
    const UpmixParams hall = params(UpmixPreset::hall);
    const std::pair<const char*, UpmixSettings> cases[] = {
        {R"({"enabled": true})", {true, UpmixPreset::music, music}},
        {R"({"enabled": "yes", "preset": "disco"})", {false, UpmixPreset::music, music}},
        {R"({"enabled": true, "preset": "hall", "params": 7})", {true, UpmixPreset::hall, hall}},
        {R"({"preset": "hall", "params": {}})", {false, UpmixPreset::hall, {}}},
        {R"({"preset": "hall", "params": {"lfe": 1, "rearDB": "loud", "exact": 1, "stage": null, "roomMs": 4}})",
         {false, UpmixPreset::hall, {.roomMs = 4}}},
        {R"({"params": {"unknown": {}, "exact": true, "lfe": "split", "focus": 0}})",
         {false, UpmixPreset::music, {.focus = 0, .lfe = UpmixParams::LFEMode::split, .exact = true}}},
        {R"("hall")", {false, UpmixPreset::music, music}},
    };
    for (const auto& [text, expected] : cases) {
        const auto read = json::parse(text).get<UpmixSettings>();
        EXPECT_EQ(read, expected) << text;
        EXPECT_EQ(json(read).get<UpmixSettings>(), read) << text;
    }
}

TEST(UpmixRecords, UpmixIsOfferedOnlyWhereItHasSpeakersToFill) {
    const SpeakerList stereo = {L, R};
    const SpeakerList l51 = {L, R, C, LFE, Ls, Rs};
    const SpeakerList l714 = {L, R, C, LFE, Ls, Rs, Lrs, Rrs, Ltf, Rtf, Ltr, Rtr};
    struct Case {
        SpeakerList source, target;
        bool applies;
        std::vector<int> fills;
    };
    const Case cases[] = {
        {stereo, {L, R, LFE}, false, {}}, {stereo, {L, R, C}, true, {}},  // the centre is enough
        {stereo, l51, true, {4, 5}},      {l51, l714, true, {6, 7, 8, 9, 10, 11}},
        {l714, l51, false, {}},           {{L, R, C}, {L, R, C, LFE}, false, {}},
        {{R, L}, {L, R, C}, false, {}},  // a reversed pair is no stereo
        {{C}, l51, false, {0, 1, 4, 5}},  {stereo, {L, C, Ls, Rs}, false, {2, 3}},
    };
    for (size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_EQ(UpmixPlanner::applies(cases[i].source, cases[i].target), cases[i].applies) << "case " << i;
        EXPECT_EQ(UpmixPlanner::fills(cases[i].source, cases[i].target), cases[i].fills) << "case " << i;
    }
}

}  // namespace
}  // namespace brindlehum
