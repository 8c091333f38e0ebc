// From play(from:) on a loaded file to the first block with sound on the headless output: p50, p95 and the longest
// of each case, in milliseconds. The goal is a p95 under 30.
#include <QCoreApplication>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <random>
#include <vector>

#include "mix/player/player_model.h"
#include "platform/headless_audio.h"
#include "platform/qt_main_loop.h"

using namespace brindlehum;
using Clock = std::chrono::steady_clock;

namespace {

constexpr int starts = 200;  // a case

// Notes when a block with sound, and one without any, has last gone out.
class Listener : public RenderTarget {
public:
    explicit Listener(RenderTarget& target) : target_(target) {}
    int32_t render(uint32_t frames, const DeviceBuffers& buffers) noexcept override {
        const int32_t status = target_.render(frames, buffers);
        bool sound = false;
        for (int c = 0; c < buffers.channels && !sound; ++c) {
            sound = std::any_of(buffers.planes[c], buffers.planes[c] + frames, [](float x) { return x != 0; });
        }
        const int64_t now = Clock::now().time_since_epoch().count();
        if (!sound) {
            silent_ = true;
        } else if (armed_.exchange(false)) {
            heardAt_ = now;
        }
        return status;
    }
    void arm() {
        heardAt_ = 0;
        armed_ = true;
    }
    void awaitSilence() { silent_ = false; }
    bool isSilent() const { return silent_; }
    int64_t heardAt() const { return heardAt_; }

private:
    RenderTarget& target_;
    std::atomic<bool> armed_{false}, silent_{false};
    std::atomic<int64_t> heardAt_{0};
};

class ListeningSystem : public HeadlessAudioSystem {
public:
    std::unique_ptr<OutputStream> openOutput(uint32_t id, bool followsDefault, RenderTarget& target,
                                             std::function<void()> onChange) override {
        if (!listener) { listener = std::make_unique<Listener>(target); }
        return HeadlessAudioSystem::openOutput(id, followsDefault, *listener, std::move(onChange));
    }
    std::unique_ptr<Listener> listener;
};

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

void until(const std::function<bool()>& done) {
    QTimer tick;  // the render thread wakes nobody
    tick.start(2);
    while (!done()) { QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents); }
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
