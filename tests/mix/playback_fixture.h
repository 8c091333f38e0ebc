// A playback engine and a player over made-up devices and a clock that the test owns.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>
#include <thread>

#include "audio/stream/memory_source.h"
#include "mix/player/player_model.h"
#include "support/audio_files.h"
#include "support/platform/manual_audio.h"
#include "support/platform/manual_main_loop.h"

namespace brindlehum::test {

// Sample `i` of channel `c` of the test sounds: all samples of one second differ, and none is 0.
inline float sample(int c, int64_t i) {
    return float(1 + i % 60000) / 65536.0F * (c % 2 ? -1.0F : 1.0F) / float(1 + c / 2);
}

inline Planes counting(int channels, int64_t frames) {
    auto planes = Planes(size_t(channels), std::vector<float>(size_t(frames)));
    for (int c = 0; c < channels; ++c) {
        for (int64_t i = 0; i < frames; ++i) { planes[size_t(c)][size_t(i)] = sample(c, i); }
    }
    return planes;
}

inline std::shared_ptr<BinauralStage> noStage(double) {
    throw std::runtime_error("no set");
}

// Each channel to the device channel of its number.
inline MixConfig straight(int channels) {
    MixConfig config;
    config.inChannels = config.rows = channels;
    config.matrix.assign(size_t(channels * channels), 0);
    for (int c = 0; c < channels; ++c) { config.matrix[size_t(c * channels + c)] = 1; }
    return config;
}

class PlaybackTest : public testing::Test {
protected:
    static constexpr uint32_t block = 256;  // frames

    ManualMainLoop loop_;
    ManualAudioSystem audio_{loop_};
    TempFolder folder_;

    // A prefilled stream of a test sound at 48 kHz.
    static std::shared_ptr<StreamReader> reader(int channels, int64_t frames) {
        auto made = std::make_shared<StreamReader>(std::make_unique<MemorySource>(counting(channels, frames), 48000.0),
                                                   48000.0, 0, frames, false, 0, frames);
        made->fillOnce();
        return made;
    }
    void pump(int blocks) {
        for (int i = 0; i < blocks; ++i) { audio_.pump(block); }
    }
    // Pumps blocks until `done` holds, giving the reader's thread its turns. Returns all that was heard, one plane a
    // device channel.
    Planes pumpUntil(const std::function<bool()>& done) {
        Planes heard;
        const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!done() && std::chrono::steady_clock::now() < limit) {
            const Planes planes = audio_.pump(block);
            heard.resize(planes.size());
            for (size_t c = 0; c < planes.size(); ++c) {
                heard[c].insert(heard[c].end(), planes[c].begin(), planes[c].end());
            }
            std::this_thread::yield();
        }
        EXPECT_TRUE(done());
        return heard;
    }
    // The source frame that the next block starts with. Read off the left channel one block later, after any fade.
    int64_t heardFrom() {
        const Planes planes = (audio_.pump(block), audio_.pump(block));
        return planes.empty() ? -1 : std::llround(double(planes[0][0]) * 65536.0) - 1 - block;
    }
};

class PlayerTest : public PlaybackTest {
protected:
    MemoryDefaults defaults_;
    SettingsStore settings_{defaults_};
    PlaybackEngine engine_{audio_, loop_, noStage};
    WorkerPool pool_{1};
    Transport::OpenSource open_ = Transport::openFile;  // what the player opens its streams with
    std::unique_ptr<PlayerModel> player_ = makePlayer();

    std::unique_ptr<PlayerModel> makePlayer() {
        return std::make_unique<PlayerModel>(engine_, settings_, loop_, pool_,
                                             [this](const auto& path, const auto& stop) { return open_(path, stop); });
    }
    LoadedSound& sound() { return player_->sound(); }
    Transport& transport() { return player_->transport(); }
    ListeningSetup& listening() { return player_->listening(); }

    void SetUp() override { use("Nearfield"); }
    void use(const std::string& profile) {
        settings_.change([&](AppSettings& s) {
            for (const auto& p : s.profiles) {
                if (p.name == profile) { s.activeProfileID = p.id; }
            }
        });
    }
    std::filesystem::path file(const std::string& name, int channels = 2, int64_t frames = 48000, int rate = 48000) {
        writeAudio(folder_ / name, counting(channels, frames), {.rate = rate});
        return folder_ / name;
    }
    // Waits for all file work and what it brings to the main thread.
    void settle() {
        for (int turn = 0; turn < 4; ++turn) {
            player_->loader().drain();
            pool_.drain();
            loop_.drain();
        }
    }
    void load(const std::filesystem::path& path, bool autoPlay = false) {
        player_->load(path, autoPlay);
        settle();
    }
    void play(std::optional<int64_t> from = std::nullopt) {
        player_->play(from);
        settle();
    }
    std::string message() const { return player_->message().text().value_or("(none)"); }
};

}  // namespace brindlehum::test
