// An upmix in the render path: its take-over, its last sound, its place in time, and the file that it makes.
#include <gtest/gtest.h>

#include "mix/config/mix_builder.h"
#include "mix/render/offline_render.h"
#include "playback_fixture.h"
#include "support/render_bench.h"
#include "support/signals.h"

namespace brindlehum::test {
namespace {

constexpr int latency = 1024;
constexpr double rate = 48000;

OutputProfile room(LayoutID layout) {
    OutputProfile profile;
    profile.layout = layout;
    return profile;
}

// Stereo in 5.1 with the numbers of a preset, changed a little.
MixConfig upmixConfig(const UpmixParams& params, LayoutID layout = LayoutID::l51) {
    return MixBuilder::config(SourceFormat::stereo(), 2, room(layout), 16, ListenMode::normal, {}, true,
                              UpmixSettings{true, UpmixPreset::film, params});
}
UpmixParams untouched() {
    UpmixParams params;
    params.strength = 0;
    params.roomMs = 0;
    return params;
}
UpmixParams late() {
    UpmixParams params = brindlehum::params(UpmixPreset::film);
    params.surroundDelayMs = 20;
    return params;
}

// A processor and the configuration that runs it.
struct Running {
    explicit Running(const UpmixParams& params) : upmixer(Upmixer::make(2, 6, rate)) {
        upmixer->apply({{SpeakerID::L, SpeakerID::R}, speakers(LayoutID::l51), params});
        config = std::make_unique<RenderConfig>(upmixConfig(params), upmixer->raw());
    }
    std::unique_ptr<Upmixer> upmixer;
    std::unique_ptr<RenderConfig> config;
};

// A tone whose period divides the latency, so that the late sound equals the direct one.
float tone(int frame, int channel) {
    return float(channel == 0 ? 0.5 : 0.2) * float(std::sin(2 * std::numbers::pi * frame / 128));
}

TEST(UpmixPath, AFrameOfTheFileIsTheSameFrameOfTheRender) {
    const struct {
        UpmixParams params;
        size_t ring;  // frames behind the end
    } cases[] = {{untouched(), latency}, {late(), latency + size_t(std::lround(48 * (20 + 12 * 0.55)))}};
    for (const auto& [params, ring] : cases) {
        for (const int block : {1, 64, 777, 4096}) {
            Planes source = counting(2, 5000);
            source[0].back() = 0.9F;  // a last bang
            auto reader = std::make_shared<StreamReader>(std::make_unique<MemorySource>(source, rate), rate, 0, 5000,
                                                         false, 0, 0);
            OfflineRender offline(upmixConfig(params), reader, rate, 6, block, 1);
            Planes out(6);
            while (const int frames = offline.next()) {
                for (size_t c = 0; c < out.size(); ++c) {
                    out[c].insert(out[c].end(), offline.planes()[c], offline.planes()[c] + frames);
                }
            }
            ASSERT_EQ(out[0].size(), 5000 + ring) << block;
            if (params.strength > 0) { continue; }
            for (size_t c = 0; c < 6; ++c) {
                Planes expected(1, c < 2 ? source[c] : std::vector<float>(5000));
                expected[0].resize(out[c].size());
                EXPECT_LT(c < 2 ? errorDb(out[c], expected[0]) : out[c] == expected[0] ? -400 : 0, -110) << c;
            }
        }
    }
}

TEST(UpmixPath, TakesOverTheRunningSoundWithoutAGap) {
    RenderBench bench(6);
    const Running upmix(untouched());
    const mn_mix_config* plain = bench.config(RenderBench::mixConfig(2, 2, {1, 0, 0, 1}));
    mn_ring* ring = bench.ring(2, 60000, tone);
    bench.listen(2);
    bench.play(ring, plain);
    for (int i = 0; i < 20; ++i) { bench.render(256); }
    bench.context.setConfig(&upmix.config->record);
    int held = 0;
    for (int i = 0; i < 40; ++i) {
        bench.render(256);
        held += bench.context.holdsReplaced() ? 1 : 0;
    }
    EXPECT_EQ(held, 2 * latency / 256) << "blocks that still need the old configuration";
    bench.context.setConfig(plain);
    for (int i = 0; i < 20; ++i) { bench.render(256); }
    for (size_t i = 256; i < bench.heard(0).size(); ++i) {
        ASSERT_NEAR(bench.heard(0)[i], tone(int(i), 0), 1e-4) << i;
        ASSERT_NEAR(bench.heard(1)[i], tone(int(i), 1), 1e-4) << i;
    }
}

// As after a change of the device, when a sound goes on from where it was.
TEST(UpmixPath, ABeginningInTheMiddleOfASoundDoesntClick) {
    for (const bool replacesAnother : {false, true}) {
        RenderBench bench(6);
        const Running upmix(untouched());
        bench.listen(2);
        if (replacesAnother) {
            bench.play(bench.ring(2, 60000, tone), bench.config(RenderBench::mixConfig(2, 2, {1, 0, 0, 1})));
            for (int i = 0; i < 4; ++i) { bench.render(256); }
        }
        const auto atItsCrest = [](int frame, int channel) { return tone(frame + 32, channel); };
        bench.play(bench.ring(2, 60000, atItsCrest), &upmix.config->record);
        for (int i = 0; i < 20; ++i) { bench.render(256); }
        // The tone's own steps, and those of its fade over a block.
        const double allowed = 1.05 * 0.5 * (2 * std::numbers::pi / 128 + 2.0 / 256);
        EXPECT_LT(maxJump(bench.heard(0)), allowed) << replacesAnother;
        EXPECT_GT(*std::ranges::max_element(bench.heard(0)), 0.45F);
    }
}

TEST(UpmixPath, RingsOutAtTheEndAndAtAStop) {
    for (const bool stopped : {false, true}) {
        RenderBench bench(6);
        const Running upmix(late());
        constexpr int frames = 4000;
        mn_ring* ring = bench.ring(2, frames, [](int frame, int channel) { return frame % 100 == channel ? 0.5F : 0; });
        mn_ring_set_eof(ring);
        bench.listen(6);
        bench.play(ring, &upmix.config->record);
        int rendered = 0;
        for (; rendered < frames; rendered += 100) { bench.render(100); }
        EXPECT_FALSE(bench.context.finished()) << "the last window isn't heard yet";
        if (stopped) { bench.context.setRing(nullptr); }
        while (!bench.context.finished() && rendered < frames + 20000) {
            bench.render(100);
            rendered += 100;
        }
        const int tail = mn_upmix_tail(upmix.upmixer->raw());
        if (!stopped) { EXPECT_NEAR(rendered, frames + tail, 200); }
        double latest = 0;
        for (int c = 0; c < 6; ++c) {
            const auto& heard = bench.heard(c);
            for (size_t i = 0; i < heard.size(); ++i) {
                if (std::abs(heard[i]) > 1e-6F) { latest = std::max(latest, double(i)); }
            }
        }
        EXPECT_GT(latest, frames + latency + 900) << "the delayed surrounds";
        EXPECT_LE(latest, frames + tail + 200);
    }
}

TEST(UpmixPath, ThePositionIsThatOfTheSoundThatIsHeard) {
    RenderBench bench(6);
    const Running upmix(untouched());
    bench.play(bench.ring(2, 60000, tone), &upmix.config->record);
    bench.context.setPosition(-1);
    bench.render(1000);
    EXPECT_EQ(bench.context.position(), -1) << "nothing is heard yet";
    for (int i = 0; i < 10; ++i) { bench.render(256); }
    EXPECT_NEAR(bench.context.position(), 2 * (1000 + 10 * 256 - 1 - latency), 1e-6);  // the ring counts in steps of 2
}

TEST(UpmixPath, TheEngineKeepsWhatAnUpmixReplacedUntilItIsHeard) {
    ManualMainLoop loop;
    ManualAudioSystem audio{loop};
    PlaybackEngine engine{audio, loop, noStage};
    engine.configure(std::nullopt, false);
    engine.setConfig(upmixConfig(untouched()));
    engine.play(std::make_shared<StreamReader>(std::make_unique<MemorySource>(counting(2, 400000), rate), rate, 0,
                                               400000, false, 0, 4096),
                0);
    std::mt19937 random(8);
    // Presets, other rooms and no upmix follow each other, some while the one before still hears its first windows.
    for (int change = 0; change < 60; ++change) {
        const LayoutID layouts[] = {LayoutID::l51, LayoutID::l714, LayoutID::l916, LayoutID::stereo};
        engine.setConfig(upmixConfig(params(allUpmixPresets[random() % 6]), layouts[random() % 4]));
        for (auto block = random() % 12; block > 0; --block) { audio.pump(256); }
        loop.advance(random() % 3 == 0 ? 3.1 : 0.1);
    }
    EXPECT_TRUE(engine.isRunning());
}

}  // namespace
}  // namespace brindlehum::test
