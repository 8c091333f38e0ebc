// PlaybackEngine: which device it opens, how long it keeps what it replaced, when the device rests, and how a binaural
// configuration waits for its stage.
#include "mix/engine/playback_engine.h"

#include <gmock/gmock.h>

#include <future>

#include "mix/render/hrtf_set.h"
#include "playback_fixture.h"
#include "support/refusal.h"

namespace brindlehum {
namespace {

using test::Planes;

class Engine : public test::PlaybackTest {
protected:
    std::unique_ptr<PlaybackEngine> engine_ = std::make_unique<PlaybackEngine>(audio_, loop_, test::noStage);

    void playStereo() {
        engine_->configure(std::nullopt, false);
        engine_->setConfig(test::straight(2));
        engine_->play(reader(2, 96000), 0);
    }
};

TEST_F(Engine, ReopensADeviceOnlyForAReason) {
    audio_.setOutputs({{1, "manual", "Manual", 16}, {2, "pair", "Pair", 2}});
    const auto configure = [&](std::optional<std::string> uid, bool force = false) {
        engine_->configure(uid, force);
        return audio_.opened();
    };
    EXPECT_EQ(configure(std::nullopt), 1);
    EXPECT_EQ(engine_->deviceName(), "System Output");
    EXPECT_EQ(configure(std::nullopt), 1);
    EXPECT_EQ(configure("pair"), 2);
    EXPECT_EQ(engine_->deviceChannels(), 2);
    EXPECT_EQ(engine_->deviceName(), "Pair");
    EXPECT_EQ(configure("pair"), 2);
    EXPECT_EQ(configure("pair", true), 3) << "forced";
    audio_.supersede();
    EXPECT_EQ(configure("pair"), 4) << "a better way to play has come up";
    EXPECT_EQ(configure("gone"), 5);
    EXPECT_EQ(engine_->deviceName(), "Unavailable device");
    EXPECT_EQ(engine_->deviceChannels(), 16) << "the default stands in";
    EXPECT_EQ(configure("gone"), 5);
    audio_.setOutputs({{1, "manual", "Manual", 16}, {7, "gone", "Back", 12}});
    EXPECT_EQ(configure("gone"), 6);
    EXPECT_EQ(engine_->deviceChannels(), 12);
    EXPECT_EQ(audio_.openStreams(), 1);
}

TEST_F(Engine, ADeviceThatReplacesAStandInIsAnnounced) {
    int changes = 0;
    engine_->onDeviceChange = [&] { ++changes; };
    engine_->configure("pair", false);
    EXPECT_EQ(engine_->device().name, "Manual") << "stands in";
    audio_.setOutputs({{1, "manual", "Manual", 16}, {3, "other", "Other", 4}});
    loop_.drain();
    EXPECT_EQ(changes, 0);
    audio_.setOutputs({{1, "manual", "Manual", 16}, {2, "pair", "Pair", 2}});
    loop_.drain();
    EXPECT_EQ(changes, 1);
    engine_->configure("pair", true);
    audio_.supersede();
    audio_.setServer(SoundServer::running);
    loop_.drain();
    EXPECT_EQ(changes, 2) << "a server has come";
}

TEST_F(Engine, AFailedConfigureLeavesNoDeviceOpen) {
    engine_->configure(std::nullopt, false);
    const auto fails = [&](const char* why) {
        const test::Refusal refusal = test::refusalOf([&] { engine_->configure(std::nullopt, true); });
        EXPECT_EQ(refusal.text, "Output device has no usable channels") << why;
        EXPECT_EQ(audio_.openStreams(), 0) << why;
    };
    audio_.setSampleRate(0);
    fails("no rate");
    audio_.setSampleRate(48000);
    audio_.setOutputs({{1, "manual", "Manual", 0}});
    fails("no channels");
}

TEST_F(Engine, AReplacedStreamLivesUntilItsFadeIsRenderedAndThreeSecondsMore) {
    playStereo();
    pump(2);
    auto reading = reader(2, 96000);
    const std::weak_ptr<StreamReader> replaced = reading;
    engine_->play(std::move(reading), 0);
    pump(1);
    engine_->stop();
    loop_.advance(9);
    EXPECT_FALSE(replaced.expired());
    pump(1);
    loop_.advance(3);
    EXPECT_FALSE(replaced.expired()) << "the block that fades it out is still to come";
    pump(1);
    loop_.advance(2.999);
    EXPECT_FALSE(replaced.expired());
    loop_.advance(0.001);
    // The reader's own thread may hold it for a moment, though the clock stands.
    pumpUntil([&] { return replaced.expired(); });
}

TEST_F(Engine, TheDeviceRestsTwentySecondsAfterTheLastStop) {
    playStereo();
    engine_->stop();
    loop_.advance(10);
    engine_->stop();
    loop_.advance(19.99);
    EXPECT_TRUE(engine_->isRunning());
    loop_.advance(0.01);
    EXPECT_FALSE(engine_->isRunning());

    engine_->play(reader(2, 96000), 0);
    EXPECT_TRUE(engine_->isRunning());
    EXPECT_EQ(audio_.started(), 2);
    engine_->stop();
    loop_.advance(15);
    engine_->play(reader(2, 96000), 0);
    loop_.advance(60);
    EXPECT_TRUE(engine_->isRunning()) << "a start within the time cancels the rest";
    EXPECT_EQ(audio_.started(), 2) << "and finds the device warm";
}

TEST_F(Engine, FinishedIsAboutTheCurrentStream) {
    engine_->configure(std::nullopt, false);
    engine_->setConfig(test::straight(2));
    engine_->play(reader(2, 1000), 0);
    pumpUntil([&] { return engine_->finished(); });
    engine_->play(reader(2, 96000), 0);
    EXPECT_FALSE(engine_->finished());
    pump(2);
    EXPECT_FALSE(engine_->finished());
}

// The test decides when the stage is made.
class Binaural : public Engine {
protected:
    std::promise<bool> gate_;  // false: there is no set
    std::shared_future<bool> open_ = gate_.get_future().share();
    int missing_ = 0;

    void SetUp() override {
        engine_ = std::make_unique<PlaybackEngine>(audio_, loop_, [open = open_](double rate) {
            return open.get() ? ConfigPublisher::sharedSetStage(rate) : throw std::runtime_error("no set");
        });
        engine_->onBinauralMissing = [this] { ++missing_; };
    }
    static MixConfig leftAndRight() {
        MixConfig config = test::straight(2);
        config.toBinaural = true;
        config.virtualDirections = {{90, 0}, {-90, 0}};
        return config;
    }
    static double energy(const std::vector<float>& plane) {
        double sum = 0;
        for (const float x : plane) { sum += double(x) * double(x); }
        return sum;
    }
};

TEST_F(Binaural, ConfigAndStreamWaitForTheirStage) {
    engine_->configure(std::nullopt, false);
    engine_->setConfig(leftAndRight());
    engine_->play(reader(2, 96000), 0);
    for (int i = 0; i < 10; ++i) { EXPECT_EQ(energy(audio_.pump(block)[0]), 0) << "silence until then"; }
    EXPECT_EQ(engine_->ctx().position(), 0) << "and nothing of the stream is lost";

    gate_.set_value(true);
    ASSERT_TRUE(loop_.runUntil([&] { return energy(audio_.pump(block)[0]) > 0; }));
    const Planes heard = audio_.pump(1024);
    EXPECT_GT(energy(heard[0]), 0);
    EXPECT_GT(energy(heard[1]), 0);
    EXPECT_EQ(missing_, 0);
}

TEST_F(Binaural, RenewedSetIsHeardAtOnceAndNothingOfTheStreamIsLost) {
    const auto own = folder_ / "own.sofa";
    std::filesystem::copy_file(HRTFSet::defaultFile(), own);
    gate_.set_value(true);
    engine_->configure(std::nullopt, false);
    engine_->setConfig(leftAndRight());
    engine_->play(reader(2, 480000), 0);
    ASSERT_TRUE(loop_.runUntil([&] { return energy(audio_.pump(block)[0]) > 0; }));
    HRTFSet::setOwn(own);
    const auto before = HRTFSet::shared(48000);
    EXPECT_NE(before, HRTFSet::shared(44100));
    for (int i = 0; i < 3; ++i) { engine_->renewBinaural(); }
    pump(8);  // fades and rings out
    EXPECT_EQ(energy(audio_.pump(block)[0]), 0);
    const double position = engine_->ctx().position();
    audio_.pump(block);
    EXPECT_EQ(engine_->ctx().position(), position);
    ASSERT_TRUE(loop_.runUntil([&] { return energy(audio_.pump(block)[0]) > 0; }));
    EXPECT_EQ(missing_, 0);
    // Another output meanwhile, and back.
    engine_->renewBinaural();
    engine_->setConfig(test::straight(2));
    pump(2);
    EXPECT_GT(energy(audio_.pump(block)[0]), 0);
    engine_->setConfig(leftAndRight());
    EXPECT_TRUE(loop_.runUntil([&] { return energy(audio_.pump(block)[0]) > 0; }));
    HRTFSet::setOwn({});
    EXPECT_NE(HRTFSet::shared(48000), before);
}

TEST_F(Binaural, ANewerConfigReplacesOneThatWaits) {
    engine_->configure(std::nullopt, false);
    engine_->setConfig(leftAndRight());
    engine_->setConfig(test::straight(2));
    engine_->play(reader(2, 96000), 0);
    pump(2);
    gate_.set_value(false);
    ASSERT_TRUE(loop_.runUntil([&] { return engine_->binauralMissing(); }));
    EXPECT_EQ(missing_, 0) << "no configuration waits for it now";
    EXPECT_EQ(audio_.pump(block)[0][0], test::sample(0, 2 * block));
}

}  // namespace
}  // namespace brindlehum
