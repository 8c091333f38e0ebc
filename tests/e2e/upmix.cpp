// An upmix on a real sound server, heard on sixteen outputs.
#include "audio/stream/file_source.h"
#include "listening_test.h"
#include "mix/config/mix_builder.h"
#include "mix/render/offline_render.h"

namespace brindlehum::test {
namespace {

struct UpmixOnPipeWire : ListeningTest {
    void choose(const std::string& preset) {
        ASSERT_EQ(player_.upmix().choose(preset), "");
        ASSERT_TRUE(until([&] { return app_.settings().value().upmix == player_.upmix().now(); }));
    }
};

Planes offline(const std::filesystem::path& file, const MixConfig& config) {
    auto reader = std::make_shared<StreamReader>(std::make_unique<FileSource>(file), double(rate), int64_t(0),
                                                 int64_t(1) << 40, false, int64_t(0), int64_t(0));
    OfflineRender render(config, std::move(reader), rate, 16, block, 1);
    Planes planes(16);
    while (const int frames = render.next()) {
        for (size_t c = 0; c < 16; ++c) {
            planes[c].insert(planes[c].end(), render.planes()[c], render.planes()[c] + frames);
        }
    }
    return planes;
}

std::vector<float> part(const std::vector<float>& plane, size_t from, size_t frames) {
    const size_t first = std::min(from, plane.size());
    return {plane.begin() + long(first), plane.begin() + long(std::min(first + frames, plane.size()))};
}

// Where the file's first frame is heard: where the left plane fits best around the first sound.
size_t startOf(const std::vector<float>& heard, const std::vector<float>& expected) {
    const auto sound = std::find_if(heard.begin(), heard.end(), [](float x) { return x != 0; });
    const auto first = size_t(sound - heard.begin());
    size_t best = 0;
    double least = INFINITY;
    for (size_t start = first > 3 * block ? first - 3 * block : 0; start < first + block; ++start) {
        const double error = errorDb(part(heard, start + rate / 2, 500), part(expected, rate / 2, 500));
        if (error >= least) { continue; }
        least = error;
        best = start;
    }
    return best;
}

TEST_F(UpmixOnPipeWire, SixteenPlanesAreThoseOfTheOfflineRender) {
    Planes sound = {noise(2 * rate, 1), noise(2 * rate, 2)};
    const auto common = noise(2 * rate, 3);
    for (auto& plane : sound) {
        for (size_t i = 0; i < plane.size(); ++i) { plane[i] = 0.1F * plane[i] + 0.2F * common[i]; }
    }
    const auto file = folder_ / "pair.wav";
    writeAudio(file, sound);
    load(file);
    choose("film");
    const MixConfig config = MixBuilder::config(SourceFormat::stereo(), 2, app_.settings().value().profiles[room], 16,
                                                ListenMode::normal, {}, true, player_.upmix().now());
    const Planes expected = offline(file, config);
    expectCleanOnce([&] {
        SinkRecorder recorder("sink16", 16, 20);
        playFrom(0);
        EXPECT_TRUE(until([&] { return recorder.soundingFrames() >= size_t(rate + rate / 2 + 4 * block); }));
        player_.stopAndReturn();
        const Planes heard = recorder.stop();
        const size_t start = startOf(heard[0], expected[0]);
        std::string fault;
        // After half a second the fade-in of the first block is forgotten.
        for (size_t c = 0; c < 16; ++c) {
            const double error = errorDb(part(heard[c], start + rate / 2, rate), part(expected[c], rate / 2, rate));
            if (error > -120) { fault += "plane " + std::to_string(c) + ": " + std::to_string(error) + " dB; "; }
        }
        return fault;
    });
}

TEST_F(UpmixOnPipeWire, NoChangeOfAnUpmixClicks) {
    Planes sound(2, sine(size_t(60) * rate, toneHz, rate, toneLevel));
    for (float& x : sound[1]) { x *= 0.3F; }
    writeAudio(folder_ / "tone.wav", sound);
    load(folder_ / "tone.wav");
    const auto edit = [&](double UpmixParams::*field, double value) {
        UpmixParams params = player_.upmix().now().params;
        params.*field = value;
        player_.upmix().edit(params);
    };
    const std::pair<const char*, std::function<void()>> changes[] = {
        {"on", [&] { player_.upmix().choose("film"); }},
        {"another preset", [&] { player_.upmix().choose("music"); }},
        {"an exact one", [&] { player_.upmix().choose("broadcast"); }},
        {"back", [&] { player_.upmix().choose("film"); }},
        {"a wider stage", [&] { edit(&UpmixParams::stage, 60); }},
        {"a delay", [&] { edit(&UpmixParams::surroundDelayMs, 0); }},
        {"half of it", [&] { edit(&UpmixParams::strength, 0.5); }},
        {"a seek", [&] { player_.transport().seek(77777); }},
        {"the fold-down, as loud", [&] { player_.compare().toggle(); }},
        {"the upmix again", [&] { player_.compare().toggle(); }},
        {"headphones", [&] { select(headphones); }},
        {"the room", [&] { select(room); }},
        {"off", [&] { player_.upmix().setOn(false); }},
        {"on again", [&] { player_.upmix().setOn(true); }},
        {"a stop", [&] { player_.stopAndReturn(); }},
    };
    expectCleanOnce([&] {
        player_.upmix().setOn(false);
        SinkRecorder recorder("sink16", 16, 60);
        playFrom(0);
        listen(recorder, 8 * block);
        for (const auto& [name, change] : changes) {
            change();
            EXPECT_TRUE(until([&] { return !player_.compare().isMeasuring(); })) << name;
            listen(recorder, 24 * block);
            EXPECT_FALSE(player_.message().text()) << name << ": " << *player_.message().text();
        }
        return clickIn(recorder.stop(), "all changes");
    });
}

}  // namespace
}  // namespace brindlehum::test
