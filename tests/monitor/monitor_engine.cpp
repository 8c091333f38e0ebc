// The monitor on made-up devices: what is heard, and what it does when devices go.
#include "monitor/engine/monitor_engine.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <numbers>
#include <stdexcept>

#include "monitor/engine/monitor_meter.h"
#include "support/platform/manual_audio.h"
#include "support/platform/manual_main_loop.h"
#include "support/signals.h"

namespace brindlehum {
namespace {

class MonitorTest : public testing::Test {
protected:
    static constexpr uint32_t block = 256;

    void SetUp() override {
        audio_.setOutputs({{1, "room", "Room", 16}, {2, "pair", "Pair", 2}});
        audio_.setInputs({{7, "bus", "Bus of the desk", 16}});
        settings_.change([](AppSettings& s) {
            OutputProfile room;
            room.id = UUID::random();
            room.layout = LayoutID::l916;
            s.profiles = {room};
        });
    }

    static std::shared_ptr<BinauralStage> noStage(double) { throw std::runtime_error("no set"); }

    // The next block of a bus of sines, a frequency for each channel.
    std::vector<std::vector<float>> bus(int channels = 16) {
        std::vector<std::vector<float>> out;
        for (int c = 0; c < channels; ++c) {
            const double hz = 200 + 50 * c;
            out.push_back(test::sine(block, hz, 48000, 0.25, 2 * std::numbers::pi * hz * double(at_) / 48000));
        }
        at_ += block;
        return out;
    }
    static double level(const std::vector<float>& plane) {
        double most = 0;
        for (const float v : plane) { most = std::max(most, std::abs(double(v))); }
        return most;
    }
    // Past the rise of 100 ms.
    void settle() {
        for (int i = 0; i < 25; ++i) { audio_.pump(block, bus()); }
    }

    ManualMainLoop loop_;
    ManualAudioSystem audio_{loop_};
    MemoryDefaults defaults_;
    SettingsStore settings_{defaults_};
    MonitorEngine monitor_{audio_, settings_, loop_, noStage};
    int64_t at_ = 0;
};

TEST_F(MonitorTest, RisesFromSilenceAndThenPassesTheBusBitByBit) {
    monitor_.start();
    EXPECT_FALSE(monitor_.running());
    EXPECT_EQ(monitor_.message(), "Choose the source (where your DAW's bus arrives)");
    monitor_.setSourceUID("bus");
    monitor_.start();
    ASSERT_TRUE(monitor_.running()) << monitor_.message();
    EXPECT_EQ(monitor_.message(), "");
    // The links come up: for 20 ms after the last one nothing is let through.
    auto some = bus();
    some.resize(3);
    for (int i = 0; i < 3; ++i) { EXPECT_EQ(level(audio_.pump(block, some)[1]), 0); }
    for (int i = 0; i < 4; ++i) { EXPECT_EQ(level(audio_.pump(block, bus())[5]), 0) << i; }
    for (int i = 0; i < 19; ++i) {
        const auto in = bus();
        const auto out = audio_.pump(block, in);
        for (size_t n = 0; n < block; ++n) {
            const double risen = std::min((double(size_t(i) * block + n) + 1) / 4800, 1.0);
            ASSERT_NEAR(out[5][n], risen * in[5][n], 1e-6) << i << " " << n;
        }
    }
    for (int i = 0; i < 4; ++i) {
        const auto in = bus();
        EXPECT_EQ(audio_.pump(block, in), in);
    }
    EXPECT_GT(monitor_.takeBusPeaks()[3], 0.24F);
    EXPECT_GT(monitor_.takeSpeakerPeaks()[15], 0.24F);
}

// Every control under one sine on all channels. What is heard is a tone, faded where something changes: no sample may
// be further from the last one than 1.1 times the steepest place of the loudest tone on that speaker.
TEST_F(MonitorTest, NoControlMakesAStep) {
    constexpr double hz = 400;  // beside which a fade over one block is flat
    settings_.change([](AppSettings& s) {
        OutputProfile small = s.profiles[0];
        small.id = UUID::random();
        small.layout = LayoutID::l51;
        s.profiles.push_back(small);
    });
    monitor_.setSourceUID("bus");
    monitor_.start();
    using State = MonitorState;
    const auto edit = [this](auto change) {
        return [this, change] {
            State next = monitor_.state();
            change(next);
            monitor_.setState(next);
        };
    };
    const std::vector<std::pair<const char*, std::function<void()>>> changes = {
        {"volume", edit([](State& s) { s.volumeDB = -6; })},
        {"dim", edit([](State& s) { s.dim = true; })},
        {"dim by", edit([](State& s) { s.dimDB = -3; })},
        {"mono sum", edit([](State& s) { s.check = MonitorCheck::monoSum; })},
        {"side", edit([](State& s) { s.check = MonitorCheck::side; })},
        {"no check", edit([](State& s) { s.check = MonitorCheck::none; })},
        {"delay", edit([](State& s) { s.alignment[SpeakerID::L].delayMs = 1.3; })},
        {"longest delay", edit([](State& s) { s.alignment[SpeakerID::L].delayMs = 99.4; })},
        {"polarity", edit([](State& s) { s.alignment[SpeakerID::R].inverted = true; })},
        {"mode", edit([](State& s) { s.mode = MonitorMode::stereo; })},
        {"full", edit([](State& s) { s.mode = MonitorMode::full; })},
        {"trim", edit([](State& s) { s.heightTrimDB = -12; })},
        {"solo", edit([](State& s) { s.solo = {SpeakerID::Ls}; })},
        {"mute of a speaker", edit([](State& s) { s.solo.clear(), s.muted = {SpeakerID::L}; })},
        {"mute", edit([](State& s) { s.mute = true; })},
        {"no mute", edit([](State& s) { s.mute = false, s.muted.clear(); })},
        {"comparison", [this] { monitor_.setOtherProfileID(settings_.value().profiles[1].id); }},
        {"other profile", [this] { monitor_.switchProfiles(); }},
        {"first profile", [this] { monitor_.switchProfiles(); }},
        {"source", edit([](State& s) { s.source = MonitorSource::l51film; })},
        {"upmix", edit([](State& s) { s.upmix.enabled = true; })},
        {"no upmix", edit([](State& s) { s.upmix.enabled = false; })},
    };
    const auto hear = [&](std::vector<std::vector<float>>& heard, int blocks) {
        for (int i = 0; i < blocks; ++i, at_ += block) {
            const auto x = test::sine(block, hz, 48000, 0.1, 2 * std::numbers::pi * hz * double(at_) / 48000);
            const auto out = audio_.pump(block, std::vector(16, x));
            for (size_t c = 0; c < out.size(); ++c) { heard[c].insert(heard[c].end(), out[c].begin(), out[c].end()); }
        }
    };
    std::vector<std::vector<float>> before(16);
    hear(before, 40);
    for (const auto& [what, change] : changes) {
        std::vector<std::vector<float>> heard(16);
        hear(heard, 4);
        change();
        hear(heard, 40);
        for (size_t c = 0; c < heard.size(); ++c) {
            const double own = level(heard[c]) * 2 * std::numbers::pi * hz / 48000;
            EXPECT_LE(test::maxJump(heard[c]), 1.1 * own) << what << ", speaker " << c;
        }
    }
    EXPECT_EQ(audio_.opened(), 1) << "no change opened the devices anew";
}

TEST_F(MonitorTest, MutesWhatIsNoNumber) {
    monitor_.setSourceUID("bus");
    monitor_.start();
    settle();
    auto in = bus();
    in[4][17] = std::numeric_limits<float>::quiet_NaN();
    in[6][0] = std::numeric_limits<float>::infinity();
    const auto out = audio_.pump(block, in);
    for (size_t c = 0; c < out.size(); ++c) {
        EXPECT_EQ(out[c], c == 4 || c == 6 ? std::vector<float>(block, 0.0F) : in[c]) << c;
    }
    in = bus();
    EXPECT_EQ(audio_.pump(block, in), in);
}

// What goes, what is said, and that it goes on, in silence first, when all is back.
TEST_F(MonitorTest, WaitsForWhatIsGoneAndGoesOn) {
    monitor_.setSourceUID("bus");
    monitor_.start();
    const auto outputs = audio_.allOutputs();
    struct Loss {
        const char* said;
        std::function<void()> lose, giveBack;
    };
    const std::vector<Loss> losses = {
        {"The source isn't available; the monitor goes on when it is back", [this] { audio_.setInputs({}); },
         [this] {
             audio_.setInputs({{9, "bus", "Bus of the desk", 16}});
         }},
        {"The output device isn't available",
         [this] {
             audio_.setDefault(std::nullopt);
             audio_.setOutputs({});
         },
         [&] {
             audio_.setOutputs(outputs);
             audio_.setDefault(1);
         }},
        {"What the output plays comes back to the source, which would howl; the monitor waits",
         [this] { audio_.setFeedsBack(true); }, [this] { audio_.setFeedsBack(false); }},
        {"The monitor needs a sound server, and none answers",
         [&] {
             audio_.setServer(SoundServer::absent);
             audio_.setOutputs({});
         },
         [&] {
             audio_.setServer(SoundServer::running);
             audio_.setOutputs(outputs);
         }},
        {"Couldn't combine the source and output devices",
         [this] {
             audio_.setOpeningFails(true);
             audio_.setDefault(2);
         },
         [this] {
             audio_.setOpeningFails(false);
             audio_.setDefault(1);
         }},
    };
    for (const Loss& loss : losses) {
        settle();
        ASSERT_TRUE(monitor_.running()) << loss.said;
        loss.lose();
        loop_.advance(3);
        EXPECT_FALSE(monitor_.running()) << loss.said;
        EXPECT_TRUE(monitor_.waiting());
        EXPECT_EQ(monitor_.message(), loss.said);
        EXPECT_TRUE(audio_.pump(block).empty());
        loss.giveBack();
        loop_.advance(1.5);
        ASSERT_TRUE(monitor_.running()) << loss.said << ": " << monitor_.message();
        EXPECT_EQ(monitor_.message(), "");
        EXPECT_EQ(level(audio_.pump(block, bus())[0]), 0) << "it rises again";
    }
    monitor_.stop();
    EXPECT_FALSE(monitor_.waiting());
    loop_.advance(5);
    EXPECT_FALSE(monitor_.running());
}

TEST_F(MonitorTest, ItsBusHasTheChannelsOfTheSourceAndIsKept) {
    EXPECT_TRUE(audio_.bus().empty());
    EXPECT_EQ(monitor_.inputs().at(1).uid, DuplexAudio::busUID);
    EXPECT_EQ(audio_.bus().size(), 16U);
    MonitorState film;
    film.source = MonitorSource::l51film;
    monitor_.setState(film);
    EXPECT_EQ(audio_.bus(), std::vector<std::string>({"FL", "FC", "FR", "SL", "SR", "LFE"}));
    monitor_.setSourceUID(DuplexAudio::busUID);
    monitor_.setProfileID(settings_.value().profiles[0].id);

    ManualMainLoop loop;
    ManualAudioSystem audio{loop};
    audio.setServer(SoundServer::absent);
    const MonitorEngine again(audio, settings_, loop, noStage);
    EXPECT_EQ(again.state(), film);
    EXPECT_EQ(again.sourceUID(), DuplexAudio::busUID);
    EXPECT_EQ(again.profileID(), settings_.value().profiles[0].id);
    EXPECT_TRUE(audio.bus().empty());
    audio.setServer(SoundServer::running);
    loop.drain();
    EXPECT_EQ(audio.bus().size(), 6U) << "made as soon as it can be, for programs that play into it";
}

TEST_F(MonitorTest, HearsAnEditedProfileAndFollowsItToAnotherDevice) {
    monitor_.setSourceUID("bus");
    monitor_.start();
    settle();
    settings_.change([](AppSettings& s) {
        s.profiles[0].outputs.assign(16, -1);
        s.profiles[0].outputs[0] = 9;
    });
    audio_.pump(block, bus());
    const auto in = bus();
    const auto out = audio_.pump(block, in);
    EXPECT_EQ(out[9], in[0]);
    EXPECT_EQ(out[0], std::vector<float>(block, 0.0F));
    EXPECT_EQ(audio_.opened(), 1) << "heard without opening the devices anew";
    settings_.change([](AppSettings& s) { s.profiles[0].deviceUID = "pair"; });
    EXPECT_EQ(audio_.opened(), 2);
    EXPECT_EQ(monitor_.deviceChannels(), 2);
}

// An engineer who looks away must find what went over, and nothing is drawn that nobody sees.
TEST_F(MonitorTest, OversStayUntilTheyAreClearedAndNothingIsAnnouncedUnseen) {
    MonitorMeter meter(monitor_, loop_);
    int announced = 0;
    QObject::connect(&meter, &MonitorMeter::changed, [&] { ++announced; });
    monitor_.setSourceUID("bus");
    monitor_.start();
    settle();
    auto loud = bus();
    loud[3][5] = -1.5F;
    audio_.pump(block, loud);
    announced = 0;
    loop_.advance(1);
    EXPECT_EQ(announced, 0) << "hidden";
    meter.show(true);
    EXPECT_EQ(meter.bus()[3].overs, 1) << "it went over while the window was hidden";
    EXPECT_NEAR(meter.bus()[3].highest, 3.52, 0.01);
    for (int i = 0; i < 2; ++i) {
        audio_.pump(block, loud);
        loop_.advance(0.04);
    }
    audio_.addDropouts(2);
    loop_.advance(10);
    EXPECT_EQ(meter.bus()[3].overs, 3);
    EXPECT_EQ(meter.speakers()[3].overs, 3);
    EXPECT_EQ(meter.bus()[2].overs, 0);
    EXPECT_EQ(meter.figures(), (MonitorMeter::Figures{256.0 / 48000, 2}));
    meter.clearOver();
    EXPECT_EQ(meter.bus()[3].overs, 0);
    announced = 0;
    loop_.advance(1);
    EXPECT_EQ(announced, 0) << "silence, which looks the same";
    audio_.setInputs({});
    loop_.advance(1.5);
    audio_.setInputs({{9, "bus", "Bus of the desk", 16}});
    loop_.advance(1.5);
    EXPECT_EQ(monitor_.dropouts(), 2U) << "of the stream before, too";
}

// The bus's loudness through the ring: a published case, and what a reset and a stop leave of it.
TEST_F(MonitorTest, MeasuresTheLoudnessOfTheBusItself) {
    monitor_.setSourceUID("bus");
    MonitorState quiet;
    quiet.volumeDB = -40;
    quiet.source = MonitorSource::stereo;
    monitor_.setState(quiet);
    monitor_.start();
    const auto hear = [&](double seconds, double db) {
        const double level = std::pow(10, db / 20);
        for (int64_t end = at_ + int64_t(seconds * 48000); at_ < end;) {
            const double before = monitor_.loudness().reading().seconds;
            for (int i = 0; i < 2; ++i, at_ += 2400) {
                const auto x = test::sine(2400, 1000, 48000, level, 2 * std::numbers::pi * double(at_) / 48);
                audio_.pump(2400, {x, x});
            }
            loop_.advance(0.1);
            ASSERT_TRUE(loop_.runUntil([&] { return monitor_.loudness().reading().seconds > before; }));
        }
    };
    const auto reading = [&] { return monitor_.loudness().reading(); };
    hear(20.2, -26);
    hear(20, -20);
    hear(20, -26);
    // EBU Tech 3341, case 5, within its 0.1 LU.
    EXPECT_NEAR(reading().integrated, -23, 0.1);
    EXPECT_NEAR(reading().shortTerm, -26, 0.1);
    monitor_.stop();
    monitor_.start();
    monitor_.loudness().reset();
    ASSERT_TRUE(loop_.runUntil([&] { return reading().seconds == 0; }));
    hear(4, -33);
    EXPECT_NEAR(reading().integrated, -33, 0.1);
    EXPECT_NEAR(reading().powers.at(0), reading().powers.at(1), 1e-12);
}

TEST_F(MonitorTest, DelaysAndInvertsSpeakersToTheFrame) {
    monitor_.setSourceUID("bus");
    MonitorState aligned;
    aligned.alignment = {{SpeakerID::R, {1.0, true}}, {SpeakerID::C, {100, false}}};
    monitor_.setState(aligned);
    monitor_.start();
    settle();
    std::vector<std::vector<float>> in(16), out(16);
    for (int i = 0; i < 40; ++i) {
        const auto x = bus();
        const auto y = audio_.pump(block, x);
        for (size_t c = 0; c < 16; ++c) {
            in[c].insert(in[c].end(), x[c].begin(), x[c].end());
            out[c].insert(out[c].end(), y[c].begin(), y[c].end());
        }
    }
    EXPECT_EQ(out[0], in[0]);
    for (size_t n = 4800; n < in[0].size(); ++n) {
        ASSERT_EQ(out[1][n], -in[1][n - 48]) << n;
        ASSERT_EQ(out[2][n], in[2][n - 4800]) << n;
    }
}

// The level of what leaves, by a meter of the tests' own: a fold-down and the room it is compared with.
TEST_F(MonitorTest, ComparesProfilesAtEqualLevel) {
    settings_.change([](AppSettings& s) {
        OutputProfile loud = s.profiles[0];
        loud.id = UUID::random();
        loud.trimsDB.assign(16, 4.0);
        s.profiles.push_back(loud);
    });
    monitor_.setSourceUID("bus");
    monitor_.setOtherProfileID(settings_.value().profiles[1].id);
    monitor_.start();
    settle();
    const auto heard = [this] {
        double sum = 0;
        for (int i = 0; i < 40; ++i) {
            for (const auto& plane : audio_.pump(block, bus())) {
                for (const float v : plane) { sum += double(v) * v; }
            }
        }
        return 10 * std::log10(sum);
    };
    const double first = heard();
    EXPECT_EQ(monitor_.matchDB(), 0);
    monitor_.switchProfiles();
    (void)heard();
    EXPECT_NEAR(monitor_.matchDB(), -4, 1e-6);
    EXPECT_NEAR(heard(), first, 0.01);
    EXPECT_EQ(monitor_.profileID(), settings_.value().profiles[1].id);
    ManualAudioSystem audio{loop_};
    audio.setInputs({{7, "bus", "Bus of the desk", 16}});
    MonitorEngine again(audio, settings_, loop_, noStage);
    again.start();
    EXPECT_NEAR(again.matchDB(), -4, 1e-6) << "the comparison is kept over a restart";
    monitor_.setOtherProfileID(std::nullopt);
    EXPECT_EQ(monitor_.matchDB(), 0);
}

}  // namespace
}  // namespace brindlehum
