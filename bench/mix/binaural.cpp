// The binaural stage beside OpenAL Soft's loopback renderer: 26 mono sources with HRTF, 256 frames at 48 kHz.
#include <AL/al.h>
#include <AL/alc.h>
#include <AL/alext.h>
#include <benchmark/benchmark.h>

#include <cmath>
#include <numbers>
#include <stdexcept>

#include "mix/render/binaural_stage.h"
#include "support/meter.h"
#include "support/render_source.h"

namespace {

using namespace brindlehum;
using namespace brindlehum::bench;

constexpr int sources = 26;
constexpr int frames = 256;
constexpr int rate = 48000;

// A loopback device with HRTF on, and looping noise all round the listener.
class OpenAlScene {
public:
    OpenAlScene() {
        const auto open = LPALCLOOPBACKOPENDEVICESOFT(alcGetProcAddress(nullptr, "alcLoopbackOpenDeviceSOFT"));
        render_ = LPALCRENDERSAMPLESSOFT(alcGetProcAddress(nullptr, "alcRenderSamplesSOFT"));
        device_ = open(nullptr);
        const ALCint attributes[] = {ALC_FORMAT_CHANNELS_SOFT,
                                     ALC_STEREO_SOFT,
                                     ALC_FORMAT_TYPE_SOFT,
                                     ALC_FLOAT_SOFT,
                                     ALC_FREQUENCY,
                                     rate,
                                     ALC_HRTF_SOFT,
                                     ALC_TRUE,
                                     0};
        context_ = alcCreateContext(device_, attributes);
        alcMakeContextCurrent(context_);
        ALCint hrtf = ALC_FALSE;
        alcGetIntegerv(device_, ALC_HRTF_SOFT, 1, &hrtf);
        if (hrtf != ALC_TRUE) { throw std::runtime_error("OpenAL has no HRTF here"); }
        const auto directions = directionsAround(sources, 0);
        ALuint ids[sources];
        alGenSources(sources, ids);
        alGenBuffers(sources, buffers_);
        for (int i = 0; i < sources; ++i) {
            const std::vector<float> samples = noise(rate, unsigned(i) + 1);
            alBufferData(buffers_[i], AL_FORMAT_MONO_FLOAT32, samples.data(), ALsizei(samples.size() * sizeof(float)),
                         rate);
            alSourcei(ids[i], AL_BUFFER, ALint(buffers_[i]));
            alSourcei(ids[i], AL_LOOPING, AL_TRUE);
            alSourcef(ids[i], AL_ROLLOFF_FACTOR, 0);
            const double az = directions[size_t(i)].az * std::numbers::pi / 180;
            const double el = directions[size_t(i)].el * std::numbers::pi / 180;
            alSource3f(ids[i], AL_POSITION, float(-std::sin(az) * std::cos(el)), float(std::sin(el)),
                       float(-std::cos(az) * std::cos(el)));
            alSourcePlay(ids[i]);
        }
        if (alGetError() != AL_NO_ERROR) { throw std::runtime_error("OpenAL refused the scene"); }
    }
    ~OpenAlScene() {
        alcMakeContextCurrent(nullptr);
        alcDestroyContext(context_);
        alcCloseDevice(device_);
    }
    OpenAlScene(const OpenAlScene&) = delete;
    OpenAlScene& operator=(const OpenAlScene&) = delete;

    void render(float* interleaved) { render_(device_, interleaved, frames); }

private:
    LPALCRENDERSAMPLESSOFT render_ = nullptr;
    ALCdevice* device_ = nullptr;
    ALCcontext* context_ = nullptr;
    ALuint buffers_[sources] = {};
};

// Both in turn, so that other load on the machine slows both alike.
void againstOpenAl(benchmark::State& state) {
    OpenAlScene scene;
    BinauralStage stage(HRTFSet::shared(rate));
    stage.setDirections(directionsAround(sources, 0));
    std::vector<std::vector<float>> lanes;
    std::vector<const float*> planes;
    for (int i = 0; i < BinauralStage::sources; ++i) {
        lanes.push_back(i < sources ? noise(frames, unsigned(i) + 1) : std::vector<float>(size_t(frames)));
        planes.push_back(lanes.back().data());
    }
    std::vector<float> interleaved(size_t(frames) * 2);
    auto left = std::vector<float>(size_t(frames));
    auto right = std::vector<float>(size_t(frames));
    for (int i = 0; i < 200; ++i) { scene.render(interleaved.data()); }
    Best ours;
    Best theirs;
    for (auto _ : state) {
        const double a = secondsOf(32, [&] { stage.process(planes.data(), frames, left.data(), right.data()); });
        const double b = secondsOf(32, [&] { scene.render(interleaved.data()); });
        ours.add(a);
        theirs.add(b);
        state.SetIterationTime(32 * a);
    }
    if (interleaved[0] == 0 || left[0] == 0) { state.SkipWithError("nothing was heard"); }
    state.counters["ours_us"] = ours.seconds * 1e6;
    state.counters["openal_us"] = theirs.seconds * 1e6;
    state.counters["ours_percent_of_block"] = 100 * ours.seconds * rate / frames;
    state.counters["times_cheaper"] = theirs.seconds / ours.seconds;
}

BENCHMARK(againstOpenAl)->UseManualTime()->MinTime(0.5);

}  // namespace
