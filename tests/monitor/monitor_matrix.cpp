// The monitor's matrix against what it stands for: a bus channel followed step by step to the device.
#include "monitor/state/monitor_matrix.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <nlohmann/json.hpp>
#include <random>

#include "spatial/layout_matrix.h"

namespace brindlehum {
namespace {

using enum SpeakerID;

OutputProfile roomOf(LayoutID layout) {
    OutputProfile profile;
    profile.layout = layout;
    return profile;
}

OutputProfile headphones() {
    OutputProfile profile;
    profile.kind = OutputProfile::Kind::headphones;
    profile.headphoneLeft = 2;
    profile.headphoneRight = 3;
    return profile;
}

double linear(double db) {
    return std::exp(db * std::log(10.0) / 20);
}

using Levels = std::map<SpeakerID, double>;

// What speakers get of a signal that stands in others.
Levels folded(const Levels& from, const SpeakerList& order, const SpeakerList& to) {
    const Matrix m =
        MixBuilder::layoutMatrix(SourceFormat::speakers(order), int(order.size()), to, ListenMode::normal, {}, true);
    Levels out;
    for (size_t r = 0; r < to.size(); ++r) {
        for (size_t c = 0; c < order.size(); ++c) {
            if (const auto found = from.find(order[c]); found != from.end()) { out[to[r]] += m[r][c] * found->second; }
        }
    }
    return out;
}

// One channel of the bus at 1, all others silent, and no upmix: the level at each device channel.
std::map<int, double> heard(const MonitorState& state, const OutputProfile& profile, int devices, SpeakerID channel) {
    const SpeakerList& bus = channels(state.source);
    const SpeakerList& room = speakers(profile.layout);
    Levels now = {{channel, 1.0}};
    if (state.mode == MonitorMode::mono) {
        const auto count = double(bus.size()) - (std::ranges::find(bus, LFE) != bus.end() ? 1 : 0);
        now = folded({{C, channel == LFE ? 0 : std::pow(count, -0.5)}}, {C}, room);
    } else if (state.mode == MonitorMode::full) {
        now = folded(now, bus, room);
        for (auto& [speaker, level] : now) {
            if (direction(speaker, room).el > 20) { level *= linear(state.heightTrimDB); }
        }
    } else {
        const LayoutID fewer = layoutFromRaw(rawValue(state.mode)).value();
        now = folded(now, bus, speakers(fewer));
        for (auto& [speaker, level] : now) {
            if (direction(speaker, speakers(fewer)).el > 20) { level *= linear(state.heightTrimDB); }
        }
        now = folded(now, speakers(fewer), room);
    }
    std::map<int, double> out;
    for (size_t r = 0; r < room.size(); ++r) {
        const int device = r < profile.outputs.size() ? profile.outputs[r] : int(r);
        const bool off =
            state.mute || state.muted.contains(room[r]) || (!state.solo.empty() && !state.solo.contains(room[r]));
        if (device < 0 || device >= devices || off) { continue; }
        const double trim = r < profile.trimsDB.size() ? profile.trimsDB[r] : 0;
        out[device] += now[room[r]] * linear(trim + state.volumeDB - (state.dim ? 20 : 0));
    }
    return out;
}

TEST(MonitorMatrix, EqualsTheWayOfEachChannelForEverySourceRoomAndMode) {
    constexpr uint32_t seed = 11;
    std::mt19937 engine(seed);
    const auto chance = [&engine](double p) { return std::bernoulli_distribution(p)(engine); };
    const auto between = [&engine](double a, double b) { return std::uniform_real_distribution<>(a, b)(engine); };
    for (const MonitorSource source : allMonitorSources) {
        for (const LayoutID layout : allLayouts) {
            for (const MonitorMode mode : allMonitorModes) {
                MonitorState state;
                state.source = source;
                state.mode = mode;
                state.sourceOffset = int(between(0, 4));
                state.volumeDB = between(-60, 12);
                state.heightTrimDB = between(-12, 6);
                state.dim = chance(0.3);
                state.mute = chance(0.1);
                OutputProfile profile = roomOf(layout);
                for (const SpeakerID speaker : speakers(layout)) {
                    if (chance(0.1)) { state.solo.insert(speaker); }
                    if (chance(0.1)) { state.muted.insert(speaker); }
                    if (chance(0.8)) { profile.outputs.push_back(int(between(-1, 18))); }
                    if (chance(0.5)) { profile.trimsDB.push_back(between(-6, 6)); }
                }
                const int inputs = int(between(2, 20));
                const int devices = int(between(1, 18));
                const MixConfig config = MonitorMatrix::build(state, inputs, profile, devices);
                ASSERT_EQ(config.matrix.size(), size_t(inputs * devices));
                for (int column = 0; column < inputs; ++column) {
                    const int channel = column - state.sourceOffset;
                    const bool isBus = channel >= 0 && channel < int(channels(source).size());
                    const auto levels = isBus ? heard(state, profile, devices, channels(source)[size_t(channel)])
                                              : std::map<int, double>();
                    for (int row = 0; row < devices; ++row) {
                        const auto level = levels.find(row);
                        ASSERT_NEAR(config.matrix[size_t(row * inputs + column)],
                                    level == levels.end() ? 0 : level->second, 1e-5)
                            << "seed " << seed << ", " << rawValue(source) << " to " << rawValue(layout) << ", mode "
                            << rawValue(mode) << ", row " << row << ", column " << column;
                    }
                }
            }
        }
    }
}

TEST(MonitorMatrix, LeavesAFilmBusBitByBitAtUnity) {
    MonitorState state;
    for (const auto& [source, layout] :
         {std::pair(MonitorSource::l714film, LayoutID::l714), std::pair(MonitorSource::l51film, LayoutID::l51),
          std::pair(MonitorSource::l916, LayoutID::l916)}) {
        state.source = source;
        const SpeakerList& bus = channels(source);
        const SpeakerList& room = speakers(layout);
        const int n = int(bus.size());
        const MixConfig config = MonitorMatrix::build(state, n, roomOf(layout), n);
        for (int r = 0; r < n; ++r) {
            for (int c = 0; c < n; ++c) {
                EXPECT_EQ(config.matrix[size_t(r * n + c)], room[size_t(r)] == bus[size_t(c)] ? 1.0F : 0.0F) << r << c;
            }
        }
    }
}

TEST(MonitorMatrix, UpmixesABusThatLeavesSpeakersOfTheRoomEmpty) {
    MonitorState state;
    state.source = MonitorSource::l51film;
    state.sourceOffset = 4;
    state.upmix.enabled = true;
    const MixConfig config = MonitorMatrix::build(state, 16, roomOf(LayoutID::l714), 12);
    ASSERT_TRUE(config.upmix);
    EXPECT_EQ(config.upmix->source, channels(MonitorSource::l51film));
    EXPECT_EQ(config.upmix->target, speakers(LayoutID::l714));
    EXPECT_EQ(config.upmixOffset, 4);
    EXPECT_EQ(config.inChannels, 12);
    for (int i = 0; i < 12; ++i) { EXPECT_EQ(config.matrix[size_t(i * 12 + i)], 1.0F) << i; }

    state.source = MonitorSource::l714;  // fills a 5.1 room
    EXPECT_FALSE(MonitorMatrix::build(state, 12, roomOf(LayoutID::l51), 6).upmix);
    state.source = MonitorSource::l51;
    EXPECT_FALSE(MonitorMatrix::build(state, 6, headphones(), 4).upmix);
}

TEST(MonitorMatrix, PutsABusAroundTheHeadOrFoldsItToTheEars) {
    MonitorState state;
    const MixConfig around = MonitorMatrix::build(state, 16, headphones(), 4);
    EXPECT_TRUE(around.toBinaural);
    EXPECT_EQ(size_t(around.rows), around.virtualDirections.size());
    EXPECT_EQ(around.binLeft, 2);
    EXPECT_EQ(around.binRight, 3);
    state.solo = {Ltf};
    const MixConfig solo = MonitorMatrix::build(state, 16, headphones(), 4);
    for (int r = 0; r < solo.rows; ++r) {
        for (int c = 0; c < 16; ++c) {
            const float gain = solo.matrix[size_t(r * 16 + c)];
            EXPECT_TRUE(gain == 0 || channels(state.source)[size_t(c)] == Ltf) << r << " " << c;
        }
    }
    EXPECT_GT(*std::ranges::max_element(solo.matrix), 0.5F);

    state.solo.clear();
    for (const auto& [mode, folds] : {std::pair(MonitorMode::full, true), std::pair(MonitorMode::stereo, false)}) {
        state.mode = mode;
        state.headphonesFold = folds;
        const MixConfig config = MonitorMatrix::build(state, 16, headphones(), 4);
        ASSERT_FALSE(config.toBinaural);
        for (int c = 0; c < 16; ++c) {
            const auto pair = folded({{channels(state.source)[size_t(c)], 1.0}}, channels(state.source), {L, R});
            EXPECT_NEAR(config.matrix[size_t(2 * 16 + c)], pair.at(L), 1e-6) << c;
            EXPECT_NEAR(config.matrix[size_t(3 * 16 + c)], pair.at(R), 1e-6) << c;
        }
    }
}

TEST(MonitorState, ReadsBackAndForgivesWhatItCannotRead) {
    MonitorState state;
    state.source = MonitorSource::l51film;
    state.sourceOffset = 3;
    state.mode = MonitorMode::mono;
    state.volumeDB = -7.5;
    state.dim = state.mute = state.headphonesFold = true;
    state.heightTrimDB = 2;
    state.solo = {Ls, Ltf};
    state.muted = {C};
    state.upmix.enabled = true;
    state.dimDB = -12;
    state.alignment = {{L, {3.5, true}}};
    state.reference = {-4, 83};
    EXPECT_EQ(nlohmann::json(state).get<MonitorState>(), state);

    const auto odd = nlohmann::json::parse(
        R"({"source": "l999", "mode": 3, "volumeDB": "loud", "dim": true, "solo": ["Ls", "Xy", 4], "upmix": [],
            "dimDB": -900, "reference": 5,
            "alignment": {"L": {"delayMs": 5000}, "R": 3, "Xy": {"delayMs": 1}, "C": {"inverted": "yes"}}})");
    MonitorState expected;
    expected.dim = true;
    expected.solo = {Ls};
    expected.dimDB = MonitorState::lowestDB;
    expected.alignment = {{L, {100, false}}};
    EXPECT_EQ(odd.get<MonitorState>(), expected);
}

TEST(MonitorMatrix, ChecksAreHalfTheSumAndTheDifferenceOfTheFoldDownOnBothFronts) {
    OutputProfile room;
    room.layout = LayoutID::l51;
    MonitorState state;
    state.source = MonitorSource::l51;
    state.mode = MonitorMode::stereo;
    const Matrix stereo = MonitorMatrix::gains(state, room);
    state.mode = MonitorMode::l714;  // which a check overrules
    for (const auto& [check, sign] : {std::pair(MonitorCheck::monoSum, 1.0), {MonitorCheck::side, -1.0}}) {
        state.check = check;
        const Matrix checked = MonitorMatrix::gains(state, room);
        for (size_t c = 0; c < 6; ++c) {
            EXPECT_DOUBLE_EQ(checked[0][c], 0.5 * (stereo[0][c] + sign * stereo[1][c]));
            EXPECT_EQ(checked[1][c], checked[0][c]);
            for (size_t r = 2; r < 6; ++r) { EXPECT_EQ(checked[r][c], 0) << r; }
        }
        EXPECT_EQ(MonitorMatrix::unreached(state, room),
                  (std::set{SpeakerID::C, SpeakerID::LFE, SpeakerID::Ls, SpeakerID::Rs}));
    }
    EXPECT_EQ(nlohmann::json(state).get<MonitorState>().check, MonitorCheck::none) << "a check is never stored";
    state.check = MonitorCheck::none;
    state.mode = MonitorMode::full;
    EXPECT_TRUE(MonitorMatrix::unreached(state, room).empty());
}

}  // namespace
}  // namespace brindlehum
