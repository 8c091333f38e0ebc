// MixBuilder: every way from a source to a profile, as tables of the expected gains.
#include "mix/config/mix_builder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

namespace brindlehum {
namespace {

using enum SpeakerID;

constexpr double g3 = 0.7071;

OutputProfile room(LayoutID layout, std::vector<int> outputs = {}, std::vector<double> trims = {}) {
    OutputProfile profile;
    profile.layout = layout;
    profile.outputs = std::move(outputs);
    profile.trimsDB = std::move(trims);
    return profile;
}

OutputProfile headphones(int left = 0, int right = 1) {
    OutputProfile profile;
    profile.kind = OutputProfile::Kind::headphones;
    profile.layout = LayoutID::l916;  // of no effect
    profile.trimsDB = {-20, -20};     // of no effect
    profile.headphoneLeft = left;
    profile.headphoneRight = right;
    return profile;
}

struct Ask {
    SourceFormat source = SourceFormat::stereo();
    int channels = 2;
    OutputProfile profile = room(LayoutID::stereo);
    int device = 2;
    ListenMode listen = ListenMode::normal;
    Rotation rotation = {};
    bool monoToCenter = false;

    MixConfig config() const {
        return MixBuilder::config(source, channels, profile, device, listen, rotation, monoToCenter, std::nullopt);
    }
};

// Device channel and source channel to gain; all other entries must be 0.
using Gains = std::map<std::pair<int, int>, double>;

void expectMatrix(const MixConfig& config, int rows, int channels, const Gains& gains) {
    ASSERT_EQ(config.rows, rows);
    ASSERT_EQ(config.inChannels, channels);
    ASSERT_EQ(config.matrix.size(), size_t(rows) * size_t(channels));
    for (int r = 0; r < rows; ++r) {
        for (int c = 0; c < channels; ++c) {
            const auto found = gains.find({r, c});
            EXPECT_NEAR(config.matrix[size_t(r * channels + c)], found == gains.end() ? 0 : found->second, 1e-4)
                << "row " << r << ", channel " << c;
        }
    }
}

TEST(MixBuilder, PutsSourcesOnDeviceChannels) {
    struct Case {
        const char* name;
        Ask ask;
        Gains gains;
    };
    // A stereo source on this profile.
    const auto to = [](OutputProfile profile, int device = 2) {
        return Ask{.profile = std::move(profile), .device = device};
    };
    const auto l51 = SourceFormat::speakers(speakers(LayoutID::l51));
    const auto stereo = LayoutID::stereo;
    const auto mono = SourceFormat::mono();
    const auto plain = ListenMode::normal;
    const Case cases[] = {
        {"stereo as it is", {}, {{{0, 0}, 1}, {{1, 1}, 1}}},
        {"swapped outputs", to(room(stereo, {1, 0})), {{{1, 0}, 1}, {{0, 1}, 1}}},
        {"an output that is off", to(room(stereo, {-1, 5}), 6), {{{5, 1}, 1}}},
        {"outputs shorter than the layout", to(room(stereo, {3}), 4), {{{3, 0}, 1}, {{1, 1}, 1}}},
        {"two speakers on one channel add up", to(room(stereo, {0, 0}, {0, -6.0206})), {{{0, 0}, 1}, {{0, 1}, 0.5}}},
        {"a trim for the first speaker alone", to(room(stereo, {}, {6.0206})), {{{0, 0}, 2}, {{1, 1}, 1}}},
        {"a device of four loses the surrounds",
         {l51, 6, room(LayoutID::l51), 4},
         {{{0, 0}, 1}, {{1, 1}, 1}, {{2, 2}, 1}, {{3, 3}, 1}}},
        {"stereo on headphones", to(headphones(3, 1), 4), {{{3, 0}, 1}, {{1, 1}, 1}}},
        {"side on the right ear",
         {.profile = headphones(), .listen = ListenMode::midSide},
         {{{0, 0}, g3}, {{0, 1}, g3}, {{1, 0}, g3}, {{1, 1}, -g3}}},
        {"an ear beyond the device", to(headphones(0, 2)), {{{0, 0}, 1}}},
        {"headphones have no centre", {mono, 1, headphones(), 2, plain, {}, true}, {{{0, 0}, g3}, {{1, 0}, g3}}},
        {"two surrounds fold to the ears",
         {.source = SourceFormat::speakers({Ls, Rs}), .profile = headphones()},
         {{{0, 0}, g3}, {{1, 1}, g3}}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const MixConfig config = c.ask.config();
        expectMatrix(config, c.ask.device, c.ask.channels, c.gains);
        EXPECT_FALSE(config.toBinaural);
    }
}

TEST(MixBuilder, SendsBedsAndAmbisonicsToVirtualSpeakers) {
    const auto film = SourceFormat::speakers(*filmOrder(LayoutID::l51));
    const MixConfig bed = Ask{film, 6, headphones(4, 7), 8, ListenMode::mono, {.yaw = 90}}.config();
    expectMatrix(bed, 6, 6, {{{0, 0}, 1}, {{1, 1}, 1}, {{2, 2}, 1}, {{3, 3}, 1}, {{4, 4}, 1}, {{5, 5}, 0.5}});
    EXPECT_TRUE(bed.toBinaural);
    EXPECT_EQ(std::pair(bed.binLeft, bed.binRight), std::pair(4, 7));
    EXPECT_EQ(bed.virtualDirections, (std::vector<Direction>{{30, 0}, {0, 0}, {-30, 0}, {110, 0}, {-110, 0}, {0, 0}}));

    // A frontal plane wave, turned left by the rotation, must come from the virtual speaker at the left.
    const MixConfig field =
        Ask{SourceFormat::ambisonic(1, AmbiNorm::fuma), 4, headphones(), 2, ListenMode::normal, {.yaw = 90}}.config();
    ASSERT_EQ(field.virtualDirections.size(), 26U);
    const double wave[] = {std::sqrt(0.5), 1, 0, 0};  // W X Y Z
    std::vector<double> axes;                         // front, back, left, right, up, down
    for (size_t r = 0; r < 6; ++r) {
        double sum = 0;
        for (size_t c = 0; c < 4; ++c) { sum += field.matrix[r * 4 + c] * wave[c]; }
        axes.push_back(sum);
    }
    EXPECT_EQ(std::max_element(axes.begin(), axes.end()) - axes.begin(), 2);
    EXPECT_NEAR(axes[0], axes[1], 1e-6);
}

}  // namespace
}  // namespace brindlehum
