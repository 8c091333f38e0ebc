// The made-up devices and their streams.
#include "support/platform/manual_audio.h"

#include <algorithm>
#include <limits>

#include "base/error.h"

namespace brindlehum {

class ManualAudioSystem::Stream : public OutputStream {
public:
    Stream(ManualAudioSystem& system, AudioOutputDevice device, bool followsDefault, RenderTarget& target,
           std::function<void()> onChange)
        : device_(std::move(device)),
          followsDefault_(followsDefault),
          target_(target),
          system_(&system),
          sampleRate_(system.sampleRate_),
          onChange_(std::make_shared<std::function<void()>>(std::move(onChange))) {}
    ~Stream() override {
        if (system_) { std::erase(system_->streams_, this); }
    }

    int channels() const override { return device_.outputChannels; }
    double sampleRate() const override { return sampleRate_; }
    bool isRunning() const override { return running_; }
    bool isCurrent() const override { return current_; }
    void pause() override { running_ = false; }
    void start() override {
        if (!system_ || system_->startingFails_) { throw Error(ErrorKind::device, "Couldn't open the output device"); }
        if (!running_) { ++system_->started_; }
        running_ = true;
    }

    const AudioOutputDevice& device() const { return device_; }
    bool followsDefault() const { return followsDefault_; }
    void supersede() { current_ = false; }
    void forgetSystem() { system_ = nullptr; }

    // At most once, and not after the stream has gone.
    void announceChange() {
        if (announced_) { return; }
        announced_ = true;
        system_->loop_.post([callback = std::weak_ptr(onChange_)] {
            if (const auto call = callback.lock(); call && *call) { (*call)(); }
        });
    }

    std::vector<std::vector<float>> render(uint32_t frames) {
        std::vector planes(size_t(channels()), std::vector<float>(frames, std::numeric_limits<float>::quiet_NaN()));
        std::vector<float*> pointers;
        for (auto& plane : planes) { pointers.push_back(plane.data()); }
        target_.render(frames, DeviceBuffers{pointers.data(), channels(), frames});
        return planes;
    }

private:
    AudioOutputDevice device_;
    bool followsDefault_;
    RenderTarget& target_;
    ManualAudioSystem* system_;
    double sampleRate_;
    std::shared_ptr<std::function<void()>> onChange_;
    bool running_ = false;
    bool current_ = true;
    bool announced_ = false;
};

ManualAudioSystem::ManualAudioSystem(MainLoop& loop) : loop_(loop), outputs_{{1, "manual", "Manual", 16}} {}

ManualAudioSystem::~ManualAudioSystem() {
    for (Stream* stream : streams_) { stream->forgetSystem(); }
}

std::unique_ptr<OutputStream> ManualAudioSystem::openOutput(uint32_t id, bool followsDefault, RenderTarget& target,
                                                            std::function<void()> onChange) {
    const auto device = std::ranges::find(outputs_, id, &AudioOutputDevice::id);
    if (openingFails_ || device == outputs_.end()) {
        throw Error(ErrorKind::device, "Couldn't open the output device");
    }
    auto stream = std::make_unique<Stream>(*this, *device, followsDefault, target, std::move(onChange));
    streams_.push_back(stream.get());
    ++opened_;
    return stream;
}

void ManualAudioSystem::setOutputs(std::vector<AudioOutputDevice> outputs) {
    outputs_ = std::move(outputs);
    for (Stream* stream : streams_) {
        if (std::ranges::find(outputs_, stream->device()) == outputs_.end()) { stream->announceChange(); }
    }
}

void ManualAudioSystem::setDefault(std::optional<uint32_t> id) {
    if (default_ == id) { return; }
    default_ = id;
    for (Stream* stream : streams_) {
        if (stream->followsDefault()) { stream->announceChange(); }
    }
}

void ManualAudioSystem::supersede() {
    for (Stream* stream : streams_) { stream->supersede(); }
}

std::vector<std::vector<float>> ManualAudioSystem::pump(uint32_t frames) {
    const auto newest =
        std::find_if(streams_.rbegin(), streams_.rend(), [](const Stream* stream) { return stream->isRunning(); });
    return newest == streams_.rend() ? std::vector<std::vector<float>>{} : (*newest)->render(frames);
}

}  // namespace brindlehum
