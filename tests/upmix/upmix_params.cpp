// Stored upmix settings: what survives damage, and that the six presets hold the agreed numbers.
#include "upmix/upmix_params.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

namespace brindlehum {
namespace {

using nlohmann::json;

// The agreed numbers, one column a preset in the order of the enumeration.
constexpr const char* presetTable = R"({
 "strength":        [1, 1, 1, 1, 1, 1],
 "centerWidth":     [0.42857142857142855, 0, 0.2, 0.6, 0, 0.3],
 "stage":           [30, 30, 45, 30, 30, 30],
 "frontAmbience":   [0.35, 0.25, 0.25, 0.2, 0.7, 0.5],
 "ambienceDB":      [3, 2, 3, 4, 0, 2],
 "sideDB":          [0, 0, 0, 0, -6, 0],
 "rearDB":          [-3, 0, 0, 0, -9, -3],
 "wideDB":          [-3, -6, -3, -3, -9, -12],
 "heightDB":        [-6, -6, -8, -2, -80, -9],
 "heightTilt":      [0, 0, 0, -0.3, 0, 0],
 "surroundDelayMs": [0, 10, 0, 0, 10, 0],
 "shelfHz":         [4000, 0, 0, 6000, 0, 0],
 "shelfDB":         [-6, 0, 0, -3, 0, 0],
 "heightHPFHz":     [150, 150, 150, 120, 150, 150],
 "roomMs":          [8, 12, 8, 20, 10, 0],
 "focus":           [1, 1, 1, 0.8, 2, 1],
 "lfe":             ["off", "split", "split", "off", "off", "off"],
 "lfeHz":           [120, 120, 80, 120, 120, 120],
 "lfeDB":           [0, 0, 0, 0, 0, 0],
 "exact":           [false, false, false, false, false, true]
})";

TEST(UpmixParams, WritesThePresetTableAndReadsItBack) {
    const json table = json::parse(presetTable);
    for (size_t column = 0; column < allUpmixPresets.size(); ++column) {
        const UpmixPreset preset = allUpmixPresets[column];
        SCOPED_TRACE(rawValue(preset));
        const json written = params(preset);
        EXPECT_EQ(written.size(), table.size());
        for (const auto& [key, row] : table.items()) { EXPECT_EQ(written.value(key, json()), row[column]) << key; }
        EXPECT_EQ(written.get<UpmixParams>(), params(preset));
        EXPECT_EQ(upmixPresetFromRaw(rawValue(preset)), preset);
    }
    EXPECT_EQ(upmixPresetFromRaw("Music"), std::nullopt);
}

// A record with every field off its initial value, so that a field that is lost or swapped on the way shows.
TEST(UpmixParams, EveryFieldSurvivesARoundTrip) {
    json odd = UpmixParams{};
    double value = 0.5;
    for (auto& [key, field] : odd.items()) {
        if (field.is_number()) { field = value += 0.125; }
    }
    odd["lfe"] = "split";
    odd["exact"] = true;
    EXPECT_EQ(json(odd.get<UpmixParams>()), odd);
}

TEST(UpmixParams, WhatCannotBeReadGetsItsInitialValueAndTheRestSurvives) {
    struct Case {
        const char* text;
        UpmixParams expected;
    };
    const Case cases[] = {
        {R"({})", {}},
        {R"({"lfe": "bass", "focus": 3})", {.focus = 3}},
        {R"({"lfe": 1, "rearDB": "loud", "exact": 1, "stage": null, "wideDB": [1], "roomMs": 4})", {.roomMs = 4}},
        {R"({"unknown": {}, "exact": true, "lfe": "split"})", {.lfe = UpmixParams::LFEMode::split, .exact = true}},
        {R"({"focus": 0, "shelfHz": 4000})", {.shelfHz = 4000, .focus = 0}},
        {R"([1, 2])", {}},
    };
    for (const Case& c : cases) { EXPECT_EQ(json::parse(c.text).get<UpmixParams>(), c.expected) << c.text; }
}

TEST(UpmixSettings, MissingPartsComeFromThePresetAndEditsOutliveIt) {
    struct Case {
        const char* text;
        UpmixSettings expected;
    };
    const UpmixParams music = params(UpmixPreset::music);
    const UpmixParams hall = params(UpmixPreset::hall);
    const Case cases[] = {
        {R"({"enabled": true})", {true, UpmixPreset::music, music}},
        {R"({"enabled": "yes", "preset": "disco"})", {false, UpmixPreset::music, music}},
        {R"({"enabled": true, "preset": "hall"})", {true, UpmixPreset::hall, hall}},
        {R"({"preset": "hall", "params": 7})", {false, UpmixPreset::hall, hall}},
        {R"({"preset": "hall", "params": {"stage": 60}})", {false, UpmixPreset::hall, {.stage = 60}}},
        {R"("hall")", {false, UpmixPreset::music, music}},
    };
    for (const Case& c : cases) {
        const auto read = json::parse(c.text).get<UpmixSettings>();
        EXPECT_EQ(read, c.expected) << c.text;
        EXPECT_EQ(json(read).get<UpmixSettings>(), read) << c.text;
    }
}

}  // namespace
}  // namespace brindlehum
