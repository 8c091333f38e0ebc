// Makes the ident and plays it through a seat of its own.
#include "mix/engine/speaker_test.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

#include "audio/stream/memory_source.h"

namespace brindlehum {

namespace {

constexpr double noiseSeconds = 1;
constexpr double pauseSeconds = 0.25;
constexpr double beepSeconds = 0.1;
constexpr double periodSeconds = 0.25;  // from beep to beep
constexpr double fadeSeconds = 0.01;
constexpr double tailSeconds = 0.3;  // for what the device still holds
constexpr float noiseGain = 0.05F;
constexpr double beepLevel = 0.15;

// A gain from 0 to 1 and back to 0 at the ends of `length` frames.
double fadeAt(size_t i, size_t length, double rate) {
    const double fade = fadeSeconds * rate;
    return std::min({1.0, double(i) / fade, double(length - 1 - i) / fade});
}

// White noise through three first-order filters, which together fall by 3 dB an octave within 0.5 dB.
void addPinkNoise(std::vector<float>& out, size_t length, double rate) {
    std::minstd_rand random;  // the same noise each time
    std::uniform_real_distribution<float> white(-1, 1);
    float low = 0;
    float middle = 0;
    float high = 0;
    for (size_t i = 0; i < length; ++i) {
        const float w = white(random);
        low = 0.99765F * low + 0.0990460F * w;
        middle = 0.96300F * middle + 0.2965164F * w;
        high = 0.57000F * high + 1.0526913F * w;
        out[i] = noiseGain * (low + middle + high + 0.1848F * w) * float(fadeAt(i, length, rate));
    }
}

}  // namespace

std::vector<float> speakerIdent(double rate, int beeps, bool low) {
    const auto frames = [rate](double seconds) { return size_t(seconds * rate); };
    std::vector<float> ident(frames(noiseSeconds + pauseSeconds + beeps * periodSeconds));
    addPinkNoise(ident, frames(noiseSeconds), rate);
    const double step = 2 * std::numbers::pi * (low ? 60 : 1000) / rate;
    const size_t length = frames(beepSeconds);
    for (int beep = 0; beep < beeps; ++beep) {
        const size_t start = frames(noiseSeconds + pauseSeconds + beep * periodSeconds);
        for (size_t i = 0; i < length; ++i) {
            ident[start + i] = float(beepLevel * std::sin(step * double(i)) * fadeAt(i, length, rate));
        }
    }
    return ident;
}

SpeakerTest::SpeakerTest(PlaybackEngine& engine, MainLoop& loop)
    : loop_(loop), seat_(engine, {[this] { stop(); }, nullptr, [this] { end_.reset(); }}) {}

void SpeakerTest::play(const std::optional<std::string>& deviceUID, const Speaker& speaker) {
    seat_.take();
    try {
        seat_.configure(deviceUID, false);
        const double rate = seat_.engine().sampleRate();
        std::vector<float> ident = speakerIdent(rate, speaker.number, speaker.low);
        const auto length = int64_t(ident.size());
        MixConfig config;
        config.inChannels = 1;
        config.rows = seat_.engine().deviceChannels();
        config.matrix.assign(size_t(config.rows), 0.0F);
        if (speaker.channel >= 0 && speaker.channel < config.rows) {
            config.matrix[size_t(speaker.channel)] = float(std::pow(10.0, speaker.trimDb / 20));
        }
        const std::vector<std::vector<float>> planes{std::move(ident)};
        auto reader = std::make_shared<StreamReader>(std::make_unique<MemorySource>(planes, rate), rate, 0, length,
                                                     false, 0, length);
        reader->fillOnce();
        seat_.setConfig(config);
        seat_.play(std::move(reader), 0);
        end_ = loop_.after(double(length) / rate + tailSeconds, [this] { stop(); });
    } catch (...) {
        stop();
        throw;
    }
}

void SpeakerTest::stop() {
    end_.reset();
    seat_.leave();
}

}  // namespace brindlehum
