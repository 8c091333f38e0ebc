// A test that runs the application on a private sound server and listens to its sinks.
#pragma once

#include <gtest/gtest.h>

#include "app/app_model.h"
#include "platform/headless_session.h"
#include "platform/linux_audio.h"
#include "platform/qt_main_loop.h"
#include "support/audio_files.h"
#include "support/event_loop_test.h"
#include "support/pipewire/private_pipewire.h"
#include "support/pipewire/sink_recorder.h"
#include "support/signals.h"

namespace brindlehum::test {

inline constexpr int rate = 48000;  // Hz, of the server and of all files
inline constexpr int block = 1024;  // frames, of the server
inline constexpr double toneHz = 200;
inline constexpr int tonePeriod = 240;  // frames
inline constexpr double toneLevel = 0.5;

class ListeningTest : public EventLoopTest {
protected:
    ListeningTest() {
        app_.settings().change([](AppSettings& s) {
            s.autoPlay = false;
            s.profiles[room].deviceUID = "sink16";
            s.profiles[nearfield].deviceUID = "sink2";
            s.profiles[headphones].deviceUID = "sink16";
        });
        app_.start(0);
    }

public:
    enum Profile : size_t { room, nearfield, headphones };

protected:
    void select(Profile profile) { player_.listening().selectProfile(app_.settings().value().profiles[profile].id); }

    std::filesystem::path toneFile(int channels, double seconds, const std::string& name = "tone.wav") {
        const Planes planes(size_t(channels), sine(size_t(seconds * rate), toneHz, rate, toneLevel));
        writeAudio(folder_ / name, planes);
        return folder_ / name;
    }
    void load(const std::filesystem::path& file) {
        player_.load(file, false);
        ASSERT_TRUE(until([&] { return player_.sound().info() && player_.sound().info()->url == file; }));
    }
    void playFrom(int64_t frame) {
        player_.play(frame);
        ASSERT_TRUE(until([&] { return player_.isPlaying(); })) << player_.message().text().value_or("no message");
    }
    // Waits until the recorder has heard `frames` more frames.
    static void listen(const SinkRecorder& recorder, int frames) {
        const size_t goal = recorder.frames() + size_t(frames);
        ASSERT_TRUE(until([&] { return recorder.frames() >= goal; })) << "the sink stands still";
    }

    PrivatePipeWire server_;
    QtMainLoop loop_;
    std::unique_ptr<AudioSystem> audio_ = makeAudioSystem(loop_);
    MemoryDefaults defaults_;
    HeadlessSession session_;
    TempFolder folder_;
    AppModel app_{Platform{loop_, *audio_, defaults_, session_, folder_ / "Catalog.sqlite"}};
    PlayerModel& player_ = app_.player();
};

// Everything heard of a tone is a sum of tones of its frequency, each faded in a straight line over one block of the
// server where something changed. A tone of peak p moves by at most 2 pi f / rate * p from sample to sample; a
// fade between two of them adds at most the difference of their peaks, 2 p, over the block. A click is a jump
// beyond that. 5 % are for the peak of a tone whose crest falls between two samples.
inline double largestAllowedJump(const std::vector<float>& heard) {
    double peak = 0;
    for (const float x : heard) { peak = std::max(peak, std::abs(double(x))); }
    return 1.05 * peak * (2 * std::numbers::pi * toneHz / rate + 2.0 / block);
}

// The first click heard, in words; empty when there is none and something was heard.
inline std::string clickIn(const Planes& heard, const std::string& what) {
    double loudest = 0;
    for (size_t c = 0; c < heard.size(); ++c) {
        const double jump = maxJump(heard[c]);
        loudest = std::max(loudest, jump);
        if (jump <= largestAllowedJump(heard[c]) + 1e-6) { continue; }
        return what + ": a jump of " + std::to_string(jump) + " in channel " + std::to_string(c);
    }
    return loudest > 0 ? "" : what + ": nothing was heard";
}

// A machine under load may miss a block of the graph. That says nothing about the product and doesn't repeat, so one
// clean run of three decides. `attempt` returns what was wrong.
inline void expectCleanOnce(const std::function<std::string()>& attempt) {
    std::string fault;
    for (int run = 0; run < 3; ++run) {
        fault = attempt();
        if (fault.empty() || testing::Test::HasFatalFailure()) { break; }
        std::fprintf(stderr, "run %d: %s\n", run, fault.c_str());
    }
    EXPECT_EQ(fault, "");
}

}  // namespace brindlehum::test
