// How soon a real file manager's selection is known and heard at the sink of a sound server; how a held key is
// followed; what it costs while another program is in front: tests/desktop/desktop-session.sh bench_file_manager
// nautilus|thunar. With a number: presses of Space that are counted. With "previewer": how long the desktop's own
// previewer takes for the same key.
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <random>

#include "desktop/desktop_fixture.h"
#include "platform/linux_audio.h"
#include "support/pipewire/private_pipewire.h"
#include "support/pipewire/sink_recorder.h"

using namespace brindlehum;
using namespace brindlehum::test;

namespace {

double now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// One xdotool for all keys: its start would count.
class Keys {
public:
    Keys() {
        process_.start("xdotool", {"-"});
        process_.waitForStarted();
    }
    ~Keys() {
        process_.closeWriteChannel();
        process_.waitForFinished();
    }
    void send(const char* command) {
        process_.write(command);
        process_.write("\n");
        process_.waitForBytesWritten();
    }

private:
    QProcess process_;
};

void print(const char* what, std::vector<double> seconds) {
    if (seconds.empty()) { return; }
    std::ranges::sort(seconds);
    const auto at = [&](double share) { return 1000 * seconds[size_t(share * double(seconds.size() - 1))]; };
    std::printf("%s: %zu times, median %.1f ms, p95 %.1f ms, most %.1f ms\n", what, seconds.size(), at(0.5), at(0.95),
                at(1));
    std::fflush(stdout);
}

constexpr int quantum = 512;  // frames of the server's blocks, which is what the player asks for
constexpr int soundCount = 12;

// In one channel of a sink's two, so that each is heard while the one before it still plays.
int channelOf(const Path& file) {
    return file.stem().string().back() % 2;
}

void writeSounds(const Path& folder) {
    for (int i = 0; i < soundCount; ++i) {
        const Path file = folder / ("sound " + std::to_string(10 + i) + ".wav");
        Planes planes = noisePlanes(2, 20 * 48'000);
        std::ranges::fill(planes[size_t(1 - channelOf(file))], 0.0F);
        writeAudio(file, planes);
    }
}

// Seconds from `start` to the first sound at the sink; none if it didn't come in time.
std::optional<double> soundAfter(double start, const SinkRecorder& sink) {
    if (!until([&] { return sink.soundAt() != 0; }, 2)) { return {}; }
    return double(sink.soundAt()) / 1e9 - start;
}

const char* stepKey(int step) {
    return step / (soundCount - 2) % 2 == 0 ? "key Right" : "key Left";
}

void measureSteps(Desk& desk, Keys& keyboard, SinkRecorder& sink) {
    constexpr int steps = 200;
    double known = 0;
    const auto load = desk.app.finder().onSelection;
    desk.app.finder().onSelection = [&](const std::optional<Path>& file) {
        known = now();
        if (file) { sink.awaitSound(channelOf(*file)); }
        load(file);
    };
    desk.app.settings().change([](AppSettings& s) { s.autoPlay = true; });
    std::vector<double> selections, starts, sounds;
    for (int step = 0; step < steps; ++step) {
        known = 0;
        const double start = now();
        keyboard.send(stepKey(step));
        if (!until([&] { return known > 0; }, 2)) { continue; }
        selections.push_back(known - start);
        const auto wanted = desk.app.finder().currentAudio();
        const auto plays = [&] {
            const auto& info = desk.app.player().sound().info();
            return info && wanted == info->url && desk.isPlaying();
        };
        if (until(plays, 2)) { starts.push_back(now() - start); }
        if (const auto sound = soundAfter(start, sink)) { sounds.push_back(*sound); }
        until([] { return false; }, 0.3);  // a user looks at what he has chosen
    }
    print("key to onSelection", selections);
    print("key to playing", starts);
    print("key to sound", sounds);
    desk.app.finder().onSelection = load;
    desk.app.settings().change([](AppSettings& s) { s.autoPlay = false; });
    desk.app.player().stopAndReturn();
}

// From rest, with the sound server's clock running: the file that is loaded, or, with `isOther`, another one.
void measureSpace(Desk& desk, Keys& keyboard, SinkRecorder& sink, bool isOther) {
    constexpr int presses = 100;
    const auto load = desk.app.finder().onSelection;
    std::vector<double> starts, sounds, stops;
    for (int press = 0; press < presses; ++press) {
        if (isOther) {
            bool isKnown = false;
            desk.app.finder().onSelection = [&](const auto&) { isKnown = true; };
            keyboard.send(stepKey(press));
            if (!until([&] { return isKnown; }, 2)) { continue; }
        }
        until([] { return false; }, 0.4);
        const auto file = desk.app.finder().currentAudio();
        if (!file || desk.isPlaying()) { continue; }
        sink.awaitSound(channelOf(*file));
        double start = now();
        keyboard.send("key space");
        if (until([&] { return desk.isPlaying(); }, 2)) { starts.push_back(now() - start); }
        if (const auto sound = soundAfter(start, sink)) { sounds.push_back(*sound); }
        until([] { return false; }, 0.25);
        start = now();
        keyboard.send("key space");
        if (until([&] { return !desk.isPlaying(); }, 2)) { stops.push_back(now() - start); }
    }
    desk.app.finder().onSelection = load;
    std::printf("%s\n", isOther ? "A file that isn't loaded:" : "The loaded file:");
    print("Space to playing", starts);
    print("Space to sound", sounds);
    print("Space to stopped", stops);
}

// How long the desktop's own previewer takes for the same key, until its window is there.
void measurePreviewer(Desk& desk, Keys& keyboard) {
    constexpr int presses = 30;
    if (!desk.isNautilus() || !std::filesystem::exists("/usr/bin/sushi")) { return; }
    desk.app.settings().change([](AppSettings& s) { s.spacePlaysInFinder = false; });
    const auto isShown = [&] {
        return std::ranges::any_of(desk.session.applications()->windows(), [](const ApplicationWindow& window) {
            return window.className.find("Previewer") != std::string::npos;
        });
    };
    std::vector<double> times;
    for (int press = 0; press < presses; ++press) {
        until([] { return false; }, 1);
        const double start = now();
        keyboard.send("key space");
        if (!until(isShown, 15)) { break; }
        times.push_back(now() - start);
        until([] { return false; }, 0.5);
        keyboard.send("key space");
        if (!until([&] { return !isShown(); }, 5)) { break; }
    }
    if (times.empty()) { return (void)std::printf("the desktop's previewer showed nothing\n"); }
    std::printf("Space to the previewer's window, which is started for it: %.0f ms\n", 1000 * times.front());
    print("Space to the previewer's window", {times.begin() + 1, times.end()});
    desk.app.settings().change([](AppSettings& s) { s.spacePlaysInFinder = true; });
}

// The longest time in which the main loop didn't turn, while Down is held.
void measureHeldKey(Desk& desk, Keys& keyboard) {
    keyboard.send("key Home");
    until([] { return false; }, 1);
    int loads = 0;
    const auto load = desk.app.finder().onSelection;
    desk.app.finder().onSelection = [&](const std::optional<Path>& file) {
        ++loads;
        load(file);
    };
    std::vector<double> gaps;
    double last = now();
    QTimer tick;
    tick.setInterval(1);
    tick.setTimerType(Qt::PreciseTimer);
    QObject::connect(&tick, &QTimer::timeout, [&] { gaps.push_back(now() - std::exchange(last, now())); });
    tick.start();
    keyboard.send("keydown Down");
    until([] { return false; }, 10);
    keyboard.send("keyup Down");
    until([] { return false; }, 1);
    tick.stop();
    print("turns of the main loop, Down held for 10 s", gaps);
    const auto chosen = desk.selected();
    const auto heard = desk.app.finder().currentAudio();
    std::printf("%d selections heard of; at the end %s\n", loads,
                heard && chosen == std::set{heard->string()} ? "the selected one" : "ANOTHER ONE");
    desk.app.finder().onSelection = load;
}

long wakeUps() {
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        long count = 0;
        if (word == "voluntary_ctxt_switches:" && status >> count) { return count; }
    }
    return 0;
}

void measureRest(Desk& desk) {
    constexpr int seconds = 60;
    QProcess other;
    other.start("xmessage", {"another program"});
    if (!until([&] { return !desk.app.finder().finderActive(); })) { return; }
    desk.app.player().stopAndReturn();
    until([] { return false; }, PlaybackEngine::idleDelay + 1);  // its stream is kept warm, and looked after, that long
    const long before = wakeUps();
    const std::clock_t busy = std::clock();
    QEventLoop rest;
    QTimer::singleShot(seconds * 1000, &rest, &QEventLoop::quit);
    rest.exec();
    std::printf("another program in front for %d s: the main thread woke %ld times, %.0f ms of processor time\n",
                seconds, wakeUps() - before, 1000.0 * double(std::clock() - busy) / CLOCKS_PER_SEC);
    other.kill();
    other.waitForFinished();
}

// Space at 30 presses a second, with another window in front now and then: each press is either ours or that window's.
void countPresses(const char* program, int presses) {
    TempFolder folder;
    writeAudio(folder / "sound.wav", noisePlanes(2, 48'000 * 600));
    Keys keyboard;
    Desk desk(program);
    desk.open(folder.path());
    desk.showIcons();
    if (!desk.choose(folder / "sound.wav")) { return; }
    const QString files = QString::number(desk.frontId());
    QProcess other;
    other.start("xev", {"-event", "keyboard"});
    QString window;
    until([&] {
        return !(window = run({"xdotool", "search", "--onlyvisible", "--name", "Event Tester"}).c_str()).isEmpty();
    });
    std::mt19937 random(1);
    int elsewhere = 0;
    int groups = 0;
    int wrong = 0;
    for (int done = 0; done < presses; ++groups) {
        const bool isElsewhere = groups % 2 == 1;
        const int count = 1 + int(random() % 100);
        run({"xdotool", "windowactivate", "--sync", isElsewhere ? window.trimmed() : files});
        until([] { return false; }, 0.7);
        const bool plays = desk.isPlaying();
        for (int i = 0; i < count; ++i) {
            keyboard.send("key space");
            until([] { return false; }, 1.0 / 30);
        }
        until([] { return false; }, 0.5);
        const bool toggles = !isElsewhere && count % 2 == 1;
        if (desk.isPlaying() != (plays != toggles)) { ++wrong; }
        done += count;
        elsewhere += isElsewhere ? count : 0;
    }
    const QByteArray heard = other.readAllStandardOutput();
    std::printf(
        "%d groups of 1 to 100 presses: %d ended wrong; of %d presses elsewhere %d arrived and %d were released\n",
        groups, wrong, elsewhere, int(heard.count("KeyPress event")), int(heard.count("KeyRelease event")));
    other.kill();
    other.waitForFinished();
}

void measurePreviewerAlone(const char* program) {
    TempFolder folder;
    writeSounds(folder.path());
    Keys keyboard;
    Desk desk(program);
    desk.open(folder.path());
    desk.showIcons();
    desk.focusView();
    measurePreviewer(desk, keyboard);
}

void measure(const char* program) {
    constexpr int many = 5000;
    TempFolder small, large;
    writeSounds(small.path());
    writeAudio(large / "sound 10000.wav", noisePlanes(2, 48'000));
    for (int i = 1; i < many; ++i) {
        std::filesystem::copy(large / "sound 10000.wav", large / ("sound " + std::to_string(10'000 + i) + ".wav"));
    }
    Keys keyboard;
    {
        PrivatePipeWire server;
        server.forceClock("quantum", quantum);
        Desk desk(program, makeAudioSystem);
        desk.app.settings().change([](AppSettings& s) {
            for (OutputProfile& profile : s.profiles) { profile.deviceUID = "sink2"; }
        });
        desk.app.player().listening().selectProfile(desk.app.settings().value().profiles[1].id);  // two speakers
        desk.open(small.path());
        desk.showIcons();
        desk.focusView();
        {
            SinkRecorder sink("sink2", 2, 1);
            measureSteps(desk, keyboard, sink);
            measureSpace(desk, keyboard, sink, false);
            measureSpace(desk, keyboard, sink, true);
        }
        measureRest(desk);
    }
    Desk desk(program);
    desk.open(large.path());
    desk.showList();
    desk.focusView();
    measureHeldKey(desk, keyboard);
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const char* const program = argc > 1 ? argv[1] : "nautilus";
    if (argc > 2 && std::string(argv[2]) == "previewer") {
        measurePreviewerAlone(program);
    } else if (argc > 2) {
        countPresses(program, std::atoi(argv[2]));
    } else {
        measure(program);
    }
}
