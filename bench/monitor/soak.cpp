// soak_monitor SECONDS: passes a bus to a room on the sound server at hand and compares every sample.
//
// A program plays a value of its own for each channel and frame into "Brindlehum Bus", the monitor passes it to the
// sink "sink16", and a third stream hears what that sink is given. Prints one line of JSON with what differed, what the
// monitor missed by its own count, what the other two streams missed, how far behind the source the sink was, and how
// often the machine itself was late.
// Ends with 1 when there was a gap while the machine was in time.
#include <pthread.h>

#include <QCoreApplication>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <thread>
#include <vector>

#include "monitor/engine/monitor_engine.h"
#include "platform/linux_audio.h"
#include "platform/qt_main_loop.h"

namespace brindlehum {
namespace {

using Clock = std::chrono::steady_clock;

constexpr size_t channelCount = 16;
constexpr size_t mostGaps = 100000;
constexpr uint64_t searched = 16384;  // frames behind the source within which the sink is looked for

// Never 0, exact in a float.
float sampleOf(size_t channel, uint64_t frame) {
    const uint64_t x = ((frame + 1) * 0x9E3779B97F4A7C15ULL) ^ ((channel + 1) * 0xD1B54A32D192ED03ULL);
    return (float((x >> 40) & 0x7FFFFF) + 0.5F) / 33554432.0F;
}

struct Source : RenderTarget {
    int32_t render(uint32_t frames, const DeviceBuffers& buffers) noexcept override {
        for (int c = 0; c < buffers.channels; ++c) {
            if (buffers.planes[c] == nullptr) { continue; }
            for (uint32_t i = 0; i < frames; ++i) { buffers.planes[c][i] = sampleOf(size_t(c), played + i); }
        }
        played += frames;
        return 0;
    }
    std::atomic<uint64_t> played = 0;
};

// Follows the source's frames, and finds them again after a gap.
struct Checker : RenderTarget {
    explicit Checker(const Source& source) : source_(source) {}

    int32_t render(uint32_t frames, const DeviceBuffers& buffers) noexcept override {
        if (!listens || buffers.inputChannels < int32_t(channelCount)) { return 0; }
        for (size_t c = 0; c < channelCount; ++c) {
            if (buffers.inputs[c] == nullptr) { return lose(frames); }
        }
        if (!found_ && !find(buffers.inputs[0], frames)) { return lose(frames); }
        uint32_t wrong = 0;
        for (size_t c = 0; c < channelCount; ++c) {
            for (uint32_t i = 0; i < frames; ++i) { wrong += buffers.inputs[c][i] == sampleOf(c, next_ + i) ? 0 : 1; }
        }
        next_ += frames;
        if (wrong > 0) {
            found_ = false;
            return lose(frames);
        }
        lag = int64_t(source_.played - next_);
        compared += uint64_t(frames) * channelCount;
        return 0;
    }
    std::atomic<bool> listens = false;
    std::atomic<uint64_t> compared = 0, lost = 0;  // samples, frames
    std::vector<Clock::time_point> gaps = std::vector<Clock::time_point>(mostGaps);
    std::atomic<size_t> gapCount = 0;
    std::atomic<int64_t> lag = 0;  // frames behind the source

private:
    int32_t lose(uint32_t frames) noexcept {
        if (!lost_ && gapCount < mostGaps) { gaps[gapCount++] = Clock::now(); }
        lost_ = true;
        lost += frames;
        return 0;
    }
    bool find(const float* heard, uint32_t frames) noexcept {
        const uint64_t played = source_.played;
        for (uint64_t back = 0; back < std::min(searched, played) && frames > 1; ++back) {
            const uint64_t at = played - back;
            if (sampleOf(0, at) != heard[0] || sampleOf(0, at + 1) != heard[1]) { continue; }
            next_ = at;
            found_ = true;
            lost_ = false;
            return true;
        }
        return false;
    }
    const Source& source_;
    uint64_t next_ = 0;
    bool found_ = false, lost_ = false;
};

// A thread of a higher priority than any of the graph's, which only sleeps on one processor: when the machine itself
// woke it up more than a millisecond late.
class Clockwork {
public:
    explicit Clockwork(unsigned processor) : thread_([this, processor] { run(processor); }) {}
    void end() {
        ends_ = true;
        if (thread_.joinable()) { thread_.join(); }
    }
    ~Clockwork() { end(); }
    // After the end: whether it was late in the cycles before this moment.
    bool wasLateBefore(Clock::time_point at) const {
        return std::ranges::any_of(stalls_, [at](const Stall& each) {
            return each.due < at && each.woken > at - std::chrono::milliseconds(40);
        });
    }
    uint64_t stalls() const { return stalls_.size(); }
    double longestMs() const { return longest_; }
    bool isRealTime() const { return isRealTime_; }

private:
    static constexpr size_t mostStalls = 100000;
    struct Stall {
        Clock::time_point due, woken;
    };
    void run(unsigned processor) {
        stalls_.reserve(mostStalls);
        cpu_set_t only;
        CPU_ZERO(&only);
        CPU_SET(processor, &only);
        pthread_setaffinity_np(pthread_self(), sizeof only, &only);
        sched_param wanted{};
        wanted.sched_priority = sched_get_priority_max(SCHED_FIFO);
        isRealTime_ = pthread_setschedparam(pthread_self(), SCHED_FIFO, &wanted) == 0;
        for (auto due = Clock::now(); !ends_;) {
            due += std::chrono::milliseconds(1);
            std::this_thread::sleep_until(due);
            const auto now = Clock::now();
            const double late = std::chrono::duration<double, std::milli>(now - due).count();
            longest_ = std::max(longest_, late);
            if (late <= 1) { continue; }
            if (stalls_.size() < mostStalls) { stalls_.push_back({due, now}); }
            due = now;
        }
    }
    std::atomic<bool> ends_ = false;
    std::vector<Stall> stalls_;
    double longest_ = 0;
    bool isRealTime_ = false;
    std::thread thread_;
};

bool waitFor(const std::function<bool()>& done) {
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!done() && std::chrono::steady_clock::now() < limit) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return done();
}

template <class Device>
Device named(const std::vector<Device>& devices, const std::string& uid) {
    const auto found = std::ranges::find(devices, uid, &Device::uid);
    if (found == devices.end()) { throw std::runtime_error("no device " + uid); }
    return *found;
}

int soak(double seconds) {
    QtMainLoop loop;
    const auto audio = makeAudioSystem(loop);
    MemoryDefaults defaults;
    SettingsStore settings(defaults);
    settings.change([](AppSettings& s) {
        OutputProfile room;
        room.id = UUID::random();
        room.layout = LayoutID::l916;
        room.deviceUID = "sink16";
        s.profiles = {room};
    });
    MonitorEngine monitor(*audio, settings, loop);
    monitor.setSourceUID(DuplexAudio::busUID);
    monitor.start();
    if (!waitFor([&] { return monitor.running(); })) { throw std::runtime_error(monitor.message()); }
    QTimer tick;  // so that the event loop wakes up
    tick.start(10);

    Source source;
    Checker checker(source);
    const auto bus = named(audio->allOutputs(), "brindlehum-bus");
    const auto playing = audio->openOutput(bus.id, false, source, [] {});
    const auto heard = named(audio->duplex()->allInputs(), "sink16.monitor");
    const auto sink = named(audio->allOutputs(), "sink2");
    const auto checking = audio->duplex()->openDuplex({heard, sink.id}, checker, [] {});
    playing->start();
    checking->start();
    std::vector<std::unique_ptr<Clockwork>> machine;
    for (unsigned p = 0; p < std::thread::hardware_concurrency(); ++p) {
        machine.push_back(std::make_unique<Clockwork>(p));
    }
    QTimer::singleShot(2000, [&] { checker.listens = true; });  // the links are up, and the monitor has risen
    QTimer::singleShot(int(seconds * 1000) + 2000, [] { QCoreApplication::quit(); });
    QCoreApplication::exec();
    checker.listens = false;
    uint64_t stalls = 0, excused = 0;
    double longest = 0;
    bool realTime = true;
    for (const auto& each : machine) {
        each->end();
        stalls += each->stalls();
        longest = std::max(longest, each->longestMs());
        realTime = realTime && each->isRealTime();
    }
    const size_t gaps = checker.gapCount;
    for (size_t i = 0; i < gaps; ++i) {
        const auto late = [&](const auto& each) { return each->wasLateBefore(checker.gaps[i]); };
        excused += std::ranges::any_of(machine, late) ? 1 : 0;
    }
    const uint64_t own = monitor.dropouts();
    const uint64_t others = playing->figures().dropouts + checking->figures().dropouts;
    const nlohmann::ordered_json line = {{"seconds", seconds},
                                         {"samplesEqual", uint64_t(checker.compared)},
                                         {"lostFrames", uint64_t(checker.lost)},
                                         {"gaps", gaps},
                                         {"gapsAtStalls", excused},
                                         {"monitorDropouts", own},
                                         {"otherDropouts", others},
                                         {"lagFrames", int64_t(checker.lag)},
                                         {"statedLatency", monitor.latency()},
                                         {"sampleRate", monitor.sampleRate()},
                                         {"machineStalls", stalls},
                                         {"longestStallMs", longest},
                                         {"realTime", realTime}};
    std::printf("%s\n", line.dump().c_str());
    return checker.compared > 0 && gaps == excused ? 0 : 1;
}

}  // namespace
}  // namespace brindlehum

int main(int count, char** words) {
    QCoreApplication application(count, words);
    if (count < 2) { return std::fputs("soak_monitor SECONDS\n", stderr), 2; }
    try {
        return brindlehum::soak(std::atof(words[1]));
    } catch (const std::exception& error) { return std::fprintf(stderr, "%s\n", error.what()), 1; }
}
