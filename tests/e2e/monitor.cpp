// The monitor on a real sound server: a program plays into the bus, and what the room gets is recorded.
#include "monitor/engine/monitor_engine.h"

#include <atomic>
#include <nlohmann/json.hpp>

#include "listening_test.h"

namespace brindlehum::test {
namespace {

// A value of its own for each channel and frame, never 0, exact in a float.
float sampleOf(size_t channel, uint64_t frame) {
    const uint64_t x = ((frame + 1) * 0x9E3779B97F4A7C15ULL) ^ ((channel + 1) * 0xD1B54A32D192ED03ULL);
    return (float((x >> 40) & 0x7FFFFF) + 0.5F) / 33554432.0F;
}

// The program that is listened to.
struct Desk : RenderTarget {
    int32_t render(uint32_t frames, const DeviceBuffers& buffers) noexcept override {
        for (int c = 0; c < buffers.channels; ++c) {
            for (uint32_t i = 0; buffers.planes[c] && i < frames; ++i) {
                buffers.planes[c][i] = sampleOf(size_t(c), played + i);
            }
        }
        played += frames;
        return 0;
    }
    std::atomic<uint64_t> played = 0;
};

struct MonitorOnPipeWire : ListeningTest {
    static constexpr LayoutID layoutOf(MonitorSource source) {
        switch (source) {
            case MonitorSource::l916:
                return LayoutID::l916;
            case MonitorSource::l714:
            case MonitorSource::l714film:
                return LayoutID::l714;
            case MonitorSource::l51:
            case MonitorSource::l51film:
                return LayoutID::l51;
            case MonitorSource::stereo:
                break;
        }
        return LayoutID::stereo;
    }
    // The bus in this order, to a room of the same speakers on sink16.
    void listenTo(MonitorSource source) {
        MonitorState state = monitor_.state();
        state.source = source;
        monitor_.setState(state);
        app_.settings().change([&](AppSettings& s) {
            s.profiles[room] = {};
            s.profiles[room].id = UUID::random();
            s.profiles[room].layout = layoutOf(source);
            s.profiles[room].deviceUID = "sink16";
            s.activeProfileID = s.profiles[room].id;
        });
        const size_t count = channels(source).size();
        ASSERT_TRUE(until([&] { return busChannels() == int(count); }));
        monitor_.setSourceUID(DuplexAudio::busUID);
        monitor_.start();
        ASSERT_TRUE(until([&] { return monitor_.running(); })) << monitor_.message();
    }
    int busChannels() {
        for (const auto& input : monitor_.inputs()) {
            if (input.uid == DuplexAudio::busUID) { return input.inputChannels; }
        }
        return 0;
    }
    uint32_t busOutput() {
        for (const auto& output : audio_->allOutputs()) {
            if (output.name == "Brindlehum Bus") { return output.id; }
        }
        return 0;
    }

    std::string wrongIn(MonitorSource source, int hertz);

    MonitorEngine& monitor_ = app_.monitor();
    Desk desk_;
};

// Where in the desk's sound the recording's last part comes from, by its first plane; none when it isn't from there.
std::optional<uint64_t> originOf(const std::vector<float>& heard, size_t from, size_t channel, uint64_t played) {
    for (uint64_t at = 0; at < played; ++at) {
        if (sampleOf(channel, at) == heard[from] && sampleOf(channel, at + 1) == heard[from + 1]) { return at; }
    }
    return std::nullopt;
}

// Plays the desk into the bus and compares a quarter of a second of the room; says what is wrong.
std::string MonitorOnPipeWire::wrongIn(MonitorSource source, int hertz) {
    const SpeakerList& bus = channels(source);
    const SpeakerList& speakersHeard = speakers(layoutOf(source));
    SinkRecorder recorder("sink16", 16, 20);
    const auto playing = audio_->openOutput(busOutput(), false, desk_, [] {});
    playing->start();
    if (!until([&] { return recorder.soundingFrames() >= size_t(hertz); })) { return "nothing was heard"; }
    playing->pause();
    const uint64_t played = desk_.played;
    const Planes heard = recorder.stop();
    const auto left = std::find_if(heard[0].begin(), heard[0].end(), [](float x) { return x != 0; });
    const size_t from = size_t(left - heard[0].begin()) + size_t(hertz / 2);
    const auto origin = originOf(heard[0], from, 0, played);
    if (!origin) { return std::string(rawValue(source)) + ": the room's L isn't the bus's"; }
    for (size_t r = 0; r < 16; ++r) {
        const auto at = r < speakersHeard.size() ? std::ranges::find(bus, speakersHeard[r]) : bus.end();
        for (size_t n = 0; n < size_t(hertz / 4); ++n) {
            const float expected = at == bus.end() ? 0.0F : sampleOf(size_t(at - bus.begin()), *origin + n);
            if (heard[r][from + n] == expected) { continue; }
            return std::string(rawValue(source)) + ": plane " + std::to_string(r) + ", frame " + std::to_string(n);
        }
    }
    return "";
}

TEST_F(MonitorOnPipeWire, EachOrderOfABusReachesItsSpeakersBitByBit) {
    for (const MonitorSource source : allMonitorSources) {
        listenTo(source);
        expectCleanOnce([&] { return wrongIn(source, rate); });
        monitor_.stop();
    }
}

TEST_F(MonitorOnPipeWire, PassesTheBusBitByBitAtOtherRates) {
    listenTo(MonitorSource::l51film);
    for (const int hertz : {44100, 96000}) {
        server_.forceClock("rate", hertz);
        {
            const SinkRecorder driving("sink16", 16, 5);  // the graph runs, so that the new rate is met
            ASSERT_TRUE(until([&] { return monitor_.running() && monitor_.sampleRate() == hertz; })) << hertz;
        }
        expectCleanOnce([&] { return wrongIn(MonitorSource::l51film, hertz); });
    }
}

// The desk's frame at the start of a cycle, beside the frame that the room hears in it.
TEST_F(MonitorOnPipeWire, IsAsLateAsItSaysAndNoMoreThanABlock) {
    struct Ear : RenderTarget {
        explicit Ear(const Desk& desk) : desk_(desk) {}
        int32_t render(uint32_t frames, const DeviceBuffers& buffers) noexcept override {
            const uint64_t played = desk_.played;
            for (uint64_t back = 0; buffers.inputs[0] && frames > 1 && back <= std::min<uint64_t>(played, 8192);
                 ++back) {
                const uint64_t at = played - back;
                if (buffers.inputs[0][0] == sampleOf(0, at) && buffers.inputs[0][1] == sampleOf(0, at + 1)) {
                    late = int64_t(back) - int64_t(frames);
                    break;
                }
            }
            return 0;
        }
        std::atomic<int64_t> late = -1;  // frames
        const Desk& desk_;
    };
    listenTo(MonitorSource::stereo);
    Ear ear(desk_);
    const auto inputs = audio_->duplex()->allInputs();
    const auto heard = std::ranges::find(inputs, "sink16.monitor", &AudioInputDevice::uid);
    ASSERT_NE(heard, inputs.end());
    const auto outputs = audio_->allOutputs();
    const auto elsewhere = std::ranges::find(outputs, "sink2", &AudioOutputDevice::uid);
    const auto hearing = audio_->duplex()->openDuplex({*heard, elsewhere->id}, ear, [] {});
    const auto playing = audio_->openOutput(busOutput(), false, desk_, [] {});
    playing->start();
    hearing->start();
    ASSERT_TRUE(until([&] { return ear.late >= 0 && monitor_.latency() > 0; }));
    EXPECT_LE(ear.late, block);
    EXPECT_NEAR(monitor_.latency(), double(ear.late) / rate, 1e-9);
}

// A click in the bus, in step with what the room hears of it.
TEST_F(MonitorOnPipeWire, AnUpmixIsAsLateAsItSays) {
    struct Clicks : RenderTarget {
        int32_t render(uint32_t frames, const DeviceBuffers& buffers) noexcept override {
            for (int c = 0; c < buffers.channels; ++c) {
                for (uint32_t i = 0; buffers.planes[c] && i < frames; ++i) {
                    buffers.planes[c][i] = (played + i) % uint64_t(rate / 2) == 777 ? 0.5F : 0.0F;
                }
            }
            played += frames;
            return 0;
        }
        uint64_t played = 0;
    };
    listenTo(MonitorSource::stereo);
    MonitorState state = monitor_.state();
    state.upmix.enabled = true;
    monitor_.setState(state);
    app_.settings().change([](AppSettings& s) { s.profiles[room].layout = LayoutID::l714; });
    ASSERT_TRUE(until([&] { return monitor_.running() && monitor_.addedLatency() > 0; }));
    const double late = monitor_.addedLatency() * rate;  // beside the block that any way takes
    Clicks clicks;
    const auto playing = audio_->openOutput(busOutput(), false, clicks, [] {});
    playing->start();
    expectCleanOnce([&]() -> std::string {
        SinkRecorder recorder("sink16", 16, 20, "brindlehum-bus");
        listen(recorder, 3 * rate);
        const Planes heard = recorder.stop();
        std::vector<float> sum(heard[0].size());
        for (size_t plane = 0; plane < 16; ++plane) {
            for (size_t i = 0; i < sum.size(); ++i) { sum[i] += heard[plane][i]; }
        }
        const auto sent = std::max_element(heard[16].begin() + rate, heard[16].begin() + 3 * rate / 2);
        const auto from = size_t(sent - heard[16].begin());
        const auto came = std::max_element(sum.begin() + long(from), sum.begin() + long(from) + rate / 2 - 1000);
        const auto frames = double(came - sum.begin() - long(from));
        return *sent == 0.5F && frames == std::round(late) ? "" : std::to_string(frames) + " frames late";
    });
}

// A block of ours that takes longer than the server waits is counted, and no other.
TEST_F(MonitorOnPipeWire, CountsTheBlocksThatItMissesItself) {
    struct Slow : RenderTarget {
        int32_t render(uint32_t, const DeviceBuffers&) noexcept override {
            const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(stalls.exchange(0));
            while (std::chrono::steady_clock::now() < end) {}
            ++blocks;
            return 0;
        }
        std::atomic<int> stalls = 0, blocks = 0;  // stalls in milliseconds
    };
    expectCleanOnce([&]() -> std::string {
        Slow slow;
        const auto outputs = audio_->allOutputs();
        const auto sink = std::ranges::find(outputs, "sink2", &AudioOutputDevice::uid);
        const auto playing = audio_->openOutput(sink->id, false, slow, [] {});
        playing->start();
        if (!until([&] { return slow.blocks > 20; })) { return "the sink stands still"; }
        if (playing->figures().dropouts != 0) { return "a drop-out without a reason"; }
        slow.stalls = 100;  // blocks last 21 ms
        if (!until([&] { return slow.stalls == 0; })) { return "the sink stands still"; }
        const int after = slow.blocks;
        if (!until([&] { return slow.blocks > after + 20; })) { return "the sink stands still"; }
        const uint64_t lost = playing->figures().dropouts;
        return lost >= 3 && lost <= 6 ? "" : std::to_string(lost) + " drop-outs for 100 ms";
    });
}

TEST_F(MonitorOnPipeWire, NoControlClicksAndTheStartRises) {
    listenTo(MonitorSource::stereo);
    select(nearfield);
    app_.settings().change([](AppSettings& s) { s.profiles[nearfield].deviceUID = "brindlehum-bus"; });
    load(toneFile(2, 30));
    expectCleanOnce([&] {
        monitor_.setProfileID(app_.settings().value().profiles[room].id);
        SinkRecorder recorder("sink16", 16, 30);
        playFrom(0);
        const auto change = [&](const char* action) {
            app_.handle("monitor", {{"action", action}});
            listen(recorder, 6 * block);
        };
        for (const char* action : {"dim", "dim", "fold", "fold", "fold", "fold", "fold", "down", "mute", "mute",
                                   "mono-sum", "mono-sum", "side", "side", "up"}) {
            change(action);
        }
        change("stop");
        app_.handle("monitor", {{"action", "start"}});
        EXPECT_TRUE(until([&] { return monitor_.running(); }));
        listen(recorder, rate / 2);
        player_.stopAndReturn();
        return clickIn(recorder.stop(), "the monitor's controls");
    });
}

TEST_F(MonitorOnPipeWire, RefusesWhatWouldHowlAndGoesOnWhenItIsGone) {
    listenTo(MonitorSource::stereo);
    monitor_.setSourceUID("sink16.monitor");
    EXPECT_FALSE(monitor_.running());
    const char* const howls = "What the output plays comes back to the source, which would howl; the monitor waits";
    EXPECT_EQ(monitor_.message(), howls);
    monitor_.setSourceUID(DuplexAudio::busUID);
    ASSERT_TRUE(until([&] { return monitor_.running(); })) << monitor_.message();
    {
        // Another program sends what the room plays back into the bus.
        PipeWireClient other;
        const std::lock_guard guard(other);
        const uint32_t from = other.waitForNode("sink16");
        const uint32_t to = other.waitForNode("brindlehum-bus");
        pw_properties* ends = pw_properties_new(nullptr, nullptr);
        pw_properties_setf(ends, PW_KEY_LINK_OUTPUT_PORT, "%u", other.ports(from, "out").at(0));
        pw_properties_setf(ends, PW_KEY_LINK_INPUT_PORT, "%u", other.ports(to, "in").at(0));
        auto* link = static_cast<pw_proxy*>(pw_core_create_object(other.core(), "link-factory", PW_TYPE_INTERFACE_Link,
                                                                  PW_VERSION_LINK, &ends->dict, 0));
        pw_properties_free(ends);
        other.sync();
        other.unlock();
        EXPECT_TRUE(until([&] { return !monitor_.running() && monitor_.message() == howls; })) << monitor_.message();
        other.lock();
        pw_proxy_destroy(link);
        other.sync();
    }
    EXPECT_TRUE(until([&] { return monitor_.running(); })) << monitor_.message();
}

TEST_F(MonitorOnPipeWire, ItsBusAndTheMonitorComeBackWithTheServer) {
    listenTo(MonitorSource::l51);
    server_.kill();
    EXPECT_TRUE(until([&] { return monitor_.waiting(); }));
    server_.start();
    EXPECT_TRUE(until([&] { return monitor_.running() && busChannels() == 6; })) << monitor_.message();
    server_.removeSink("sink16");
    EXPECT_TRUE(until([&] { return monitor_.message() == "The output device isn't available"; }));
    server_.addSink("sink16", 16);
    EXPECT_TRUE(until([&] { return monitor_.running(); })) << monitor_.message();
}

}  // namespace
}  // namespace brindlehum::test
