// From play(from:) on a loaded file to the first block with sound on the headless output: p50, p95 and the longest
// of each case, in milliseconds. The goal is a p95 under 30.
#include <QCoreApplication>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <random>
#include <vector>

#include "mix/player/player_model.h"
#include "platform/qt_main_loop.h"
#include "support/listener.h"

using namespace brindlehum;
using namespace brindlehum::bench;

namespace {

constexpr int starts = 200;  // a case

// 32-bit float WAV of noise that is never 0.
void writeNoise(const std::filesystem::path& path, int channels, int rate, int seconds) {
    std::vector<float> samples(size_t(channels) * size_t(rate) * size_t(seconds));
    std::mt19937 engine(1);
    std::uniform_real_distribution<float> uniform(0.1F, 0.5F);
    for (float& x : samples) { x = uniform(engine); }
    const auto bytes = uint32_t(samples.size() * sizeof(float));
    char head[44];
    const auto put = [&head](int at, uint32_t value, int size) { std::memcpy(head + at, &value, size_t(size)); };
    std::memcpy(head, "RIFF____WAVEfmt ____________________data", 40);
    put(4, 36 + bytes, 4), put(16, 16, 4), put(20, 3, 2), put(22, uint32_t(channels), 2), put(24, uint32_t(rate), 4);
    put(28, uint32_t(rate * channels * 4), 4), put(32, uint32_t(channels * 4), 2), put(34, 32, 2), put(40, bytes, 4);
    std::ofstream(path, std::ios::binary)
        .write(head, sizeof head)
        .write(reinterpret_cast<const char*>(samples.data()), std::streamsize(bytes));
}

struct Bench {
    QtMainLoop loop;
    ListeningSystem audio;
    MemoryDefaults defaults;
    SettingsStore settings{defaults};
    PlaybackEngine engine{audio, loop};
    WorkerPool pool{1};
    PlayerModel player{engine, settings, loop, pool};

    void load(const std::filesystem::path& url) {
        player.load(url, false);
        until([&] {
            return player.sound().info() && player.sound().info()->url == url && player.sound().waveform() &&
                   player.sound().waveform()->isComplete();
        });
    }
    // `prepare` brings the player to where the start happens from.
    void measure(const char* name, const std::function<void()>& prepare) {
        std::mt19937 engineOfSeeks(2);
        std::vector<double> ms;
        for (int i = 0; i < starts; ++i) {
            prepare();
            const auto from = int64_t(engineOfSeeks() % uint64_t(player.sound().info()->frames / 2));
            audio.listener->arm();
            const int64_t began = Clock::now().time_since_epoch().count();
            player.play(from);
            until([&] { return audio.listener->heardAt() != 0; });
            ms.push_back(double(audio.listener->heardAt() - began) / 1e6);
            until([&] { return player.isPlaying(); });
        }
        std::sort(ms.begin(), ms.end());
        std::printf("%-36s p50 %6.2f  p95 %6.2f  max %6.2f ms\n", name, ms[starts / 2], ms[starts * 95 / 100],
                    ms.back());
    }
    void useHeadphones() {
        settings.change([](AppSettings& s) { s.activeProfileID = s.profiles.back().id; });
        player.profileChanged();
    }
    void restWarm() {
        audio.listener->awaitSilence();
        player.stopAndReturn();
        until([&] { return !engine.isRunning() || audio.listener->isSilent(); });
    }
    void restCold() {
        player.stopAndReturn();
        engine.configure(std::nullopt, true);
    }
};

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const auto folder = std::filesystem::temp_directory_path() / "brindlehum-start-latency";
    std::filesystem::create_directories(folder);
    writeNoise(folder / "stereo.wav", 2, 48000, 60);
    writeNoise(folder / "sixteen.wav", 16, 48000, 60);
    writeNoise(folder / "cd.wav", 2, 44100, 60);
    {
        Bench bench;
        bench.engine.configure(std::nullopt, false);
        bench.load(folder / "stereo.wav");
        bench.measure("stereo, device at rest", [&] { bench.restCold(); });
        bench.measure("stereo, device warm", [&] { bench.restWarm(); });
        bench.load(folder / "cd.wav");
        bench.measure("stereo 44.1 kHz, device warm", [&] { bench.restWarm(); });
        bench.load(folder / "sixteen.wav");
        bench.measure("16 channels, device at rest", [&] { bench.restCold(); });
        bench.measure("16 channels, device warm", [&] { bench.restWarm(); });
        bench.player.sound().setFormatOverride(SourceFormat::ambisonic(3, AmbiNorm::sn3d));
        bench.measure("third order Ambisonics, device warm", [&] { bench.restWarm(); });
        bench.useHeadphones();
        bench.measure("the same on headphones", [&] { bench.restWarm(); });
    }
    std::filesystem::remove_all(folder);
    return 0;
}
