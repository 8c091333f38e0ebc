// Layout tags, labels and channel masks against the tables of libsndfile and FFmpeg.
#include "audio/speakers/channel_layout.h"

#include <gtest/gtest.h>
#include <sndfile.h>

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
}

#include <map>

#include "caf_bytes.h"
#include "support/audio_files.h"

namespace brindlehum {
namespace {

using namespace test;
using enum SpeakerID;

// Calls `compare(tag, labels, path)` for every tag that we know, with a file that states it.
template <typename Compare>
void forEachKnownTag(Compare compare) {
    const TempFolder folder;
    const auto path = folder / "tag.caf";
    for (uint32_t id = 100; id < 200; ++id) {
        for (uint32_t channels = 1; channels <= 16; ++channels) {
            const uint32_t tag = id << 16 | channels;
            const std::vector<uint32_t> ours = ChannelLabels::labels(ChannelLayout{tag, 0, {}});
            if (ours.empty()) { continue; }
            ASSERT_EQ(ours.size(), channels) << id;
            writeBytes(path, cafFile(channels, cafChunk("chan", be32(tag) + be32(0) + be32(0)) + cafData(channels)));
            compare(id, ours, path);
        }
    }
}

// The labels that each channel of libsndfile's map may have; libsndfile doesn't tell direct from plain surrounds.
std::vector<std::vector<uint32_t>> sndfileLabels(const std::filesystem::path& path) {
    // clang-format off
    static const std::map<int, std::vector<uint32_t>> labels = {
        {SF_CHANNEL_MAP_MONO, {42}}, {SF_CHANNEL_MAP_LEFT, {1, 38, 204, 206, 208}},
        {SF_CHANNEL_MAP_RIGHT, {2, 39, 205, 207, 209}}, {SF_CHANNEL_MAP_CENTER, {3}}, {SF_CHANNEL_MAP_LFE, {4}},
        {SF_CHANNEL_MAP_REAR_LEFT, {5, 33}}, {SF_CHANNEL_MAP_REAR_RIGHT, {6, 34}}, {SF_CHANNEL_MAP_REAR_CENTER, {9}},
        {SF_CHANNEL_MAP_FRONT_LEFT_OF_CENTER, {7}}, {SF_CHANNEL_MAP_FRONT_RIGHT_OF_CENTER, {8}},
        {SF_CHANNEL_MAP_SIDE_LEFT, {5, 10, 33}}, {SF_CHANNEL_MAP_SIDE_RIGHT, {6, 11, 34}},
        {SF_CHANNEL_MAP_TOP_CENTER, {12}}, {SF_CHANNEL_MAP_TOP_FRONT_LEFT, {13}},
        {SF_CHANNEL_MAP_TOP_FRONT_CENTER, {14}}, {SF_CHANNEL_MAP_TOP_FRONT_RIGHT, {15}},
        {SF_CHANNEL_MAP_AMBISONIC_B_W, {200}}, {SF_CHANNEL_MAP_AMBISONIC_B_X, {201}},
        {SF_CHANNEL_MAP_AMBISONIC_B_Y, {202}}, {SF_CHANNEL_MAP_AMBISONIC_B_Z, {203}}};
    // clang-format on
    SF_INFO info{};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    std::vector<int> map(size_t(info.channels));
    std::vector<std::vector<uint32_t>> out;
    if (file && sf_command(file, SFC_GET_CHANNEL_MAP_INFO, map.data(), int(map.size() * sizeof(int))) == SF_TRUE) {
        for (const int m : map) { out.push_back(labels.contains(m) ? labels.at(m) : std::vector<uint32_t>{0}); }
    }
    sf_close(file);
    return out;
}

TEST(LayoutTags, AgreeWithLibsndfileChannelByChannel) {
    int compared = 0;
    forEachKnownTag([&](uint32_t id, const std::vector<uint32_t>& ours, const std::filesystem::path& path) {
        const auto theirs = sndfileLabels(path);
        for (size_t c = 0; c < theirs.size(); ++c) {
            if (theirs[c] == std::vector<uint32_t>{0}) { continue; }
            EXPECT_NE(std::ranges::find(theirs[c], ours[c]), theirs[c].end()) << "tag " << id << " channel " << c;
        }
        if (!theirs.empty()) { ++compared; }
    });
    EXPECT_GE(compared, 29);
}

// FFmpeg's table knows more tags but no order: each of our labels must have its channel in FFmpeg's mask.
TEST(LayoutTags, AgreeWithFFmpegAsSets) {
    constexpr uint64_t surroundL = AV_CH_SIDE_LEFT | AV_CH_BACK_LEFT;
    constexpr uint64_t surroundR = AV_CH_SIDE_RIGHT | AV_CH_BACK_RIGHT;
    // clang-format off
    const std::map<uint32_t, uint64_t> channels = {
        {1, AV_CH_FRONT_LEFT | AV_CH_STEREO_LEFT}, {2, AV_CH_FRONT_RIGHT | AV_CH_STEREO_RIGHT},
        {3, AV_CH_FRONT_CENTER}, {4, AV_CH_LOW_FREQUENCY}, {5, surroundL}, {6, surroundR},
        {7, AV_CH_FRONT_LEFT_OF_CENTER}, {8, AV_CH_FRONT_RIGHT_OF_CENTER}, {9, AV_CH_BACK_CENTER},
        {10, AV_CH_SURROUND_DIRECT_LEFT | surroundL}, {11, AV_CH_SURROUND_DIRECT_RIGHT | surroundR},
        {12, AV_CH_TOP_CENTER}, {13, AV_CH_TOP_FRONT_LEFT}, {14, AV_CH_TOP_FRONT_CENTER}, {15, AV_CH_TOP_FRONT_RIGHT},
        {33, surroundL}, {34, surroundR}, {35, AV_CH_WIDE_LEFT}, {36, AV_CH_WIDE_RIGHT}, {42, AV_CH_FRONT_CENTER}};
    // clang-format on
    av_log_set_level(AV_LOG_QUIET);
    int compared = 0;
    forEachKnownTag([&](uint32_t id, const std::vector<uint32_t>& ours, const std::filesystem::path& path) {
        AVFormatContext* context = nullptr;
        ASSERT_EQ(avformat_open_input(&context, path.c_str(), nullptr, nullptr), 0);
        const AVChannelLayout& theirs = context->streams[0]->codecpar->ch_layout;
        if (theirs.order == AV_CHANNEL_ORDER_NATIVE) {
            uint64_t left = theirs.u.mask;
            for (const uint32_t label : ours) {
                const auto known = channels.find(label);
                if (known == channels.end()) { continue; }
                EXPECT_TRUE(known->second & left) << "tag " << id << " label " << label << " mask " << left;
                left &= ~(known->second & left & -(known->second & left));
            }
            ++compared;
        }
        avformat_close_input(&context);
    });
    EXPECT_GE(compared, 40);
}

TEST(LayoutTags, WithoutSpeakersGiveNoLabels) {
    for (const uint32_t tag : {147U << 16 | 6, 190U << 16 | 16, 191U << 16 | 9, 0xFFFF0000U, 121U << 16 | 5, 1U}) {
        EXPECT_TRUE(ChannelLabels::labels(ChannelLayout{tag, 0x3F, {1, 2}}).empty()) << std::hex << tag;
    }
    EXPECT_TRUE(ChannelLabels::labels(std::nullopt).empty());
    EXPECT_EQ(ChannelLabels::labels(ChannelLayout{0, 0x3F, {7, 0, 99}}), (std::vector<uint32_t>{7, 0, 99}));
}

// FFmpeg's native masks use the WAVE bits for the classic eighteen positions.
TEST(ChannelBitmaps, ReadAsFFmpegNamesTheirChannels) {
    const std::pair<uint64_t, SpeakerList> masks[] = {
        {AV_CH_LAYOUT_QUAD, {L, R, Ls, Rs}},
        {AV_CH_LAYOUT_5POINT1, {L, R, C, LFE, Ls, Rs}},
        {AV_CH_LAYOUT_5POINT1_BACK, {L, R, C, LFE, Ls, Rs}},
        {AV_CH_LAYOUT_6POINT1, {L, R, C, LFE, Cs, Ls, Rs}},
        {AV_CH_LAYOUT_7POINT1, {L, R, C, LFE, Lrs, Rrs, Ls, Rs}},
        {AV_CH_LAYOUT_7POINT1_WIDE_BACK, {L, R, C, LFE, Ls, Rs, Lc, Rc}},
        {AV_CH_LAYOUT_7POINT1 | AV_CH_TOP_FRONT_LEFT | AV_CH_TOP_FRONT_RIGHT | AV_CH_TOP_BACK_LEFT |
             AV_CH_TOP_BACK_RIGHT,
         {L, R, C, LFE, Lrs, Rrs, Ls, Rs, Ltf, Rtf, Ltr, Rtr}},
        {AV_CH_LAYOUT_STEREO | AV_CH_TOP_CENTER, {L, R, Tc}},
    };
    for (const auto& [mask, expected] : masks) {
        const auto labels = ChannelLabels::labels(ChannelLayout{ChannelLabels::useBitmap, uint32_t(mask), {}});
        EXPECT_EQ(ChannelLabels::speakers(labels), expected) << std::hex << mask;
    }
    EXPECT_TRUE(ChannelLabels::labels(ChannelLayout{ChannelLabels::useBitmap, 0, {}}).empty());
    EXPECT_TRUE(ChannelLabels::labels(ChannelLayout{ChannelLabels::useBitmap, 0x40003, {}}).empty()) << "bit 18";
}

TEST(ChannelLabelsToSpeakers, RefuseUnknownAndRepeatedLabels) {
    using Labels = std::vector<uint32_t>;
    for (const Labels& bad : {Labels{1, 2, 0}, {1, 65}, {14}, {17}, {200}, {0x20000}, {1, 1}, {3, 42}, {5, 33, 10}}) {
        EXPECT_FALSE(ChannelLabels::speakers(bad)) << testing::PrintToString(bad);
    }
    EXPECT_EQ(ChannelLabels::speakers({1, 2, 3, 4, 5, 6, 10, 11}), (SpeakerList{L, R, C, LFE, Lrs, Rrs, Ls, Rs}));
    EXPECT_EQ(ChannelLabels::speakers({35, 36, 60, 61, 63, 64, 55, 56}),
              (SpeakerList{Lw, Rw, Ltm, Rtm, Lrs, Rrs, Ls, Rs}));
    EXPECT_EQ(ChannelLabels::speakers({7, 8, 9, 12, 13, 15, 18, 52, 49, 51}),
              (SpeakerList{Lc, Rc, Cs, Tc, Ltf, Rtf, Rtr, Ltr, Ltm, Rtm}));
}

TEST(WaveMasks, MatchTheMasksThatFFmpegWrites) {
    const std::pair<SpeakerList, uint64_t> masks[] = {
        {{L, R}, AV_CH_LAYOUT_STEREO},
        {speakers(LayoutID::l51), AV_CH_LAYOUT_5POINT1_BACK},
        {*filmOrder(LayoutID::l51), AV_CH_LAYOUT_5POINT1_BACK},
        {speakers(LayoutID::l71), AV_CH_LAYOUT_7POINT1},
        {speakers(LayoutID::l714), 0x2D63F},
        {{Tc, Cs, Lc, Rc},
         AV_CH_TOP_CENTER | AV_CH_BACK_CENTER | AV_CH_FRONT_LEFT_OF_CENTER | AV_CH_FRONT_RIGHT_OF_CENTER},
        {{}, 0},
    };
    for (const auto& [list, expected] : masks) {
        const auto mask = WaveMask::mask(list);
        ASSERT_TRUE(mask);
        EXPECT_EQ(mask->mask, expected);
        // Reading the mask back gives the very order that was promised.
        const auto labels = ChannelLabels::labels(ChannelLayout{ChannelLabels::useBitmap, mask->mask, {}});
        EXPECT_EQ(ChannelLabels::speakers(labels), mask->order);
    }
    EXPECT_EQ(WaveMask::mask(speakers(LayoutID::l714))->order,
              (SpeakerList{L, R, C, LFE, Lrs, Rrs, Ls, Rs, Ltf, Rtf, Ltr, Rtr}));
    for (const LayoutID layout : {LayoutID::l712, LayoutID::l916}) { EXPECT_FALSE(WaveMask::mask(speakers(layout))); }
    EXPECT_FALSE(WaveMask::mask({L, L}));
}

}  // namespace
}  // namespace brindlehum
