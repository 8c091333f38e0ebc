// What exported files are called, which forms are offered, and what the channels of each are.
#include "mix/export/export_name.h"
#include "mix/export/export_plan.h"
#include "support/refusal.h"

#include <gtest/gtest.h>

#include "base/text.h"

namespace brindlehum::test {
namespace {

using Names = std::vector<std::string>;

Exporter::Request requestOf(const SourceFormat& source, DragExport mode = {}) {
    Exporter::Request request;
    request.info.url = "/sounds/rain.flac";
    request.info.sampleRate = 48000;
    request.info.channels = source.channels();
    request.info.frames = 480000;
    request.source = source;
    request.mode = mode;
    request.upmixName = "Broadcast";
    return request;
}
SourceFormat layout(LayoutID id) {
    return SourceFormat::speakers(speakers(id));
}

TEST(ExportName, TellsSourceRangeAndForm) {
    const auto named = [](DragExport mode, ListenMode listen, std::optional<FrameRange> range, std::string source) {
        Exporter::Request request = requestOf(SourceFormat::stereo(), mode);
        request.listen = listen;
        request.range = range;
        request.info.url = "/sounds/" + source;
        return ExportName::fileName(request);
    };
    const std::string wide(300, 'a');
    std::string accents;
    while (accents.size() < 300) { accents += "\xC3\xA9"; }
    const struct {
        DragExport mode;
        ListenMode listen;
        std::optional<FrameRange> range;
        std::string source, name;
    } cases[] = {
        {{}, ListenMode::normal, {}, "rain.wav", "rain.wav"},
        {{}, ListenMode::mono, {}, "rain.flac", "rain_mono.wav"},
        {DragExport::bed(LayoutID::stereo), ListenMode::normal, {}, "rain.wav", "rain_st.wav"},
        {DragExport::bed(LayoutID::l714), ListenMode::normal, {}, "a.b.wav", "a.b_714.wav"},
        {DragExport::binaural(), ListenMode::normal, FrameRange{0, 24}, "rain.wav", "rain_0.000-0.001s_bin.wav"},
        {DragExport::upmix(LayoutID::l714), ListenMode::normal, FrameRange{60000, 144000}, "rain.wav",
         "rain_1.250-3.000s_714up-broadcast.wav"},
        {{}, ListenMode::normal, {}, "Take 1:a?<b>|\"c\"*\\\x01.wav", "Take 1-a--b---c----.wav"},
        {{}, ListenMode::normal, {}, "caf\xE9 \xC3\xA9.wav", "caf- \xC3\xA9.wav"},
        {DragExport::binaural(), ListenMode::normal, {}, wide, std::string(247, 'a') + "_bin.wav"},
        {DragExport::binaural(), ListenMode::normal, {}, accents, accents.substr(0, 246) + "_bin.wav"},
    };
    for (const auto& c : cases) { EXPECT_EQ(named(c.mode, c.listen, c.range, c.source), c.name); }
    EXPECT_EQ(ExportName::numbered("rain.wav", 1), "rain.wav");
    EXPECT_EQ(ExportName::numbered("rain.wav", 12), "rain 12.wav");
    EXPECT_EQ(ExportName::numbered(std::string(251, 'a') + ".wav", 2), std::string(249, 'a') + " 2.wav");
}

TEST(DragExport, FormsAreOfferedBySource) {
    const struct {
        std::optional<SourceFormat> source;
        int channels;
        Names plain, upmixes;
    } cases[] = {
        {std::nullopt, 0, {"original"}, {}},
        {SourceFormat::mono(), 1, {"original"}, {}},
        {SourceFormat::stereo(), 2, {"original"}, {"upmix-l916", "upmix-l714", "upmix-l51"}},
        {SourceFormat::stereo(), 3, {"original"}, {}},
        {SourceFormat::discrete(7), 7, {"original"}, {}},
        {layout(LayoutID::l51),
         6,
         {"original", "bed-l916", "bed-l714", "bed-l51", "bed-stereo", "binaural"},
         {"upmix-l916", "upmix-l714"}},
        {SourceFormat::ambisonic(1, AmbiNorm::sn3d),
         4,
         {"original", "bed-l916", "bed-l714", "bed-l712", "bed-l51", "bed-stereo", "binaural"},
         {}},
    };
    for (const auto& c : cases) {
        for (const bool upmixes : {false, true}) {
            Names ids, expected = c.plain;
            if (upmixes) { expected.insert(expected.end(), c.upmixes.begin(), c.upmixes.end()); }
            for (const DragExport& mode : dragOptions(c.source, c.channels, upmixes)) {
                ids.push_back(id(mode));
                EXPECT_EQ(dragExportFromId(id(mode)), mode);
            }
            EXPECT_EQ(ids, expected);
        }
    }
    EXPECT_EQ(name(DragExport::bed(LayoutID::l714)), "7.1.4 bed");
    EXPECT_EQ(name(DragExport::bed(LayoutID::stereo)), "Stereo fold-down");
    EXPECT_EQ(name(DragExport::upmix(LayoutID::l916)), "9.1.6 upmix");
    EXPECT_FALSE(dragExportFromId("bed-l999"));
}

// The masks are those of mmreg.h.
TEST(ExportPlan, ChannelsHaveTheMaskAndTheLabelOfTheirLayout) {
    const struct {
        SourceFormat source;
        DragExport mode;
        ListenMode listen;
        int channels;
        uint32_t mask;
        std::string label;
    } cases[] = {
        {SourceFormat::stereo(), {}, ListenMode::mono, 2, 3, "Stereo (Mono sum)"},
        {SourceFormat::stereo(), {}, ListenMode::midSide, 2, 3, "Stereo (M/S decode)"},
        {layout(LayoutID::l51), {}, ListenMode::normal, 6, 0x3F, "5.1"},
        {SourceFormat::discrete(7), {}, ListenMode::normal, 7, 0, "7-ch discrete"},
        {SourceFormat::ambisonic(1, AmbiNorm::sn3d), {}, ListenMode::normal, 4, 0, "AmbiX 1st order"},
        {layout(LayoutID::l916), DragExport::bed(LayoutID::l714), ListenMode::normal, 12, 0x2D63F,
         "7.1.4 (WAVE order)"},
        {layout(LayoutID::l916), DragExport::bed(LayoutID::l712), ListenMode::normal, 10, 0,
         "7.1.2 (SMPTE order: L R C LFE Lss Rss Lrs Rrs Ltm Rtm)"},
        {SourceFormat::stereo(), DragExport::upmix(LayoutID::l51), ListenMode::normal, 6, 0x3F,
         "5.1 upmix, Broadcast (WAVE order)"},
        {layout(LayoutID::l51), DragExport::binaural(), ListenMode::normal, 2, 3, "Binaural (HRTF)"},
    };
    for (const auto& c : cases) {
        Exporter::Request request = requestOf(c.source, c.mode);
        request.listen = c.listen;
        const ExportPlan plan = ExportPlan::of(request, {1000, 2000});
        EXPECT_EQ(plan.label, c.label);
        EXPECT_EQ(plan.channels, c.channels) << c.label;
        EXPECT_EQ(plan.mask, c.mask) << c.label;
        EXPECT_EQ(plan.frames, c.mode == DragExport::binaural() ? 13000 : 1000) << c.label;
    }
    // Row i of a 7.1.4 bed is heard by the i-th speaker of the mask.
    const ExportPlan bed = ExportPlan::of(requestOf(layout(LayoutID::l714), DragExport::bed(LayoutID::l714)), {0, 1});
    const int order[] = {0, 1, 2, 3, 6, 7, 4, 5, 8, 9, 10, 11};
    for (size_t r = 0; r < 12; ++r) {
        for (int c = 0; c < 12; ++c) { EXPECT_EQ(bed.config.matrix[r * 12 + size_t(c)], c == order[r] ? 1 : 0); }
    }
}

TEST(ExportPlan, RefusesFormsThatASourceHasNot) {
    const struct {
        SourceFormat source;
        DragExport mode;
        int code;
    } cases[] = {
        {SourceFormat::discrete(5), DragExport::binaural(), 30},
        {SourceFormat::discrete(2), DragExport::upmix(LayoutID::l51), 31},
        {layout(LayoutID::l916), DragExport::upmix(LayoutID::l51), 31},
        {SourceFormat::mono(), DragExport::upmix(LayoutID::l714), 31},
    };
    for (const auto& c : cases) {
        const auto refusal = refusalOf([&] { ExportPlan::of(requestOf(c.source, c.mode), {0, 10}); });
        EXPECT_EQ(refusal.kind ? int(*refusal.kind) : 0, c.code) << refusal.text;
    }
}

}  // namespace
}  // namespace brindlehum::test
