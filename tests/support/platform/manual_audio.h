// ManualAudioSystem: output devices that a test makes up, and whose render the test itself drives.
#pragma once

#include <algorithm>
#include <limits>
#include <memory>

#include "base/error.h"
#include "platform/audio_system.h"
#include "platform/duplex_audio.h"
#include "platform/main_loop.h"

namespace brindlehum {

// Starts with one device, {1, "manual", "Manual", 16 channels}, which is the default, at 48 kHz. Main thread.
// `onChange` of the streams comes through `loop`.
class ManualAudioSystem : public AudioSystem, public DuplexAudio {
public:
    explicit ManualAudioSystem(MainLoop& loop) : loop_(loop) {}
    ~ManualAudioSystem() override {
        for (Stream* stream : streams_) { stream->system_ = nullptr; }
    }

    std::vector<AudioOutputDevice> allOutputs() override { return outputs_; }
    std::optional<uint32_t> defaultOutput() override { return default_; }
    SoundServer server() override { return server_; }
    std::unique_ptr<OutputStream> openOutput(uint32_t id, bool followsDefault, RenderTarget& target,
                                             std::function<void()> onChange) override {
        const auto device = std::ranges::find(outputs_, id, &AudioOutputDevice::id);
        if (openingFails_ || device == outputs_.end()) { fail(); }
        ++opened_;
        return std::make_unique<Stream>(*this, *device, followsDefault, target, std::move(onChange));
    }

    DuplexAudio* duplex() override { return server_ == SoundServer::running ? this : nullptr; }
    std::vector<AudioInputDevice> allInputs() override {
        auto inputs = inputs_;
        if (!bus_.expired()) { inputs.push_back({100, busUID, "Monitor of Brindlehum Bus", int(bus_.lock()->size())}); }
        inputs.push_back({0, openPortsUID, "Open ports", 16});
        return inputs;
    }
    bool feedsBack(const AudioInputDevice&, uint32_t) override { return feedsBack_; }
    std::unique_ptr<OutputStream> openDuplex(const DuplexRequest& request, RenderTarget& target,
                                             std::function<void()> onChange) override {
        auto stream = openOutput(request.output, request.followsDefault, target, std::move(onChange));
        streams_.back()->input_ = request.input;
        return stream;
    }
    std::unique_ptr<PassStream> openPass(uint32_t, RenderTarget&, std::function<void()>) override { fail(); }
    std::shared_ptr<void> makeBus(const std::vector<std::string>& positions) override {
        auto bus = std::make_shared<std::vector<std::string>>(positions);
        bus_ = bus;
        return bus;
    }

    // --- What happens to the machine.
    // Announces the change to streams whose input has gone or changed.
    void setInputs(std::vector<AudioInputDevice> inputs) {
        inputs_ = std::move(inputs);
        const auto known = allInputs();
        for (Stream* stream : streams_) {
            const bool listens = stream->input_.inputChannels > 0;
            if (listens && std::ranges::find(known, stream->input_.uid, &AudioInputDevice::uid) == known.end()) {
                stream->announceChange();
            }
        }
        changed();
    }
    // Whether any output comes back to any input; streams that listen are told.
    void setFeedsBack(bool feedsBack) {
        feedsBack_ = feedsBack;
        for (Stream* stream : streams_) {
            if (feedsBack && stream->input_.inputChannels > 0) { stream->announceChange(); }
        }
    }
    // Channels of the bus that the test's program made; empty without one.
    std::vector<std::string> bus() const { return bus_.expired() ? std::vector<std::string>() : *bus_.lock(); }
    // Announces the change to streams whose device has gone or changed.
    void setOutputs(std::vector<AudioOutputDevice> outputs) {
        outputs_ = std::move(outputs);
        for (Stream* stream : streams_) {
            if (std::ranges::find(outputs_, stream->device_) == outputs_.end()) { stream->announceChange(); }
        }
        changed();
    }
    // Announces the change to streams that follow the default.
    void setDefault(std::optional<uint32_t> id) {
        if (std::exchange(default_, id) == id) { return; }
        for (Stream* stream : streams_) {
            if (stream->followsDefault_) { stream->announceChange(); }
        }
        changed();
    }
    void setServer(SoundServer state) {
        server_ = state;
        changed();
    }
    // Of streams opened from now on, in Hz.
    void setSampleRate(double hertz) { sampleRate_ = hertz; }
    // While set, openOutput or start throw Error (device) with "Couldn't open the output device".
    void setOpeningFails(bool fails) { openingFails_ = fails; }
    void setStartingFails(bool fails) { startingFails_ = fails; }
    // The streams open now stop being current.
    void supersede() {
        for (Stream* stream : streams_) { stream->current_ = false; }
    }

    // --- What is heard.
    // One block rendered by the newest running stream: a plane of `frames` floats a channel, filled with NaN
    // before; empty when no stream runs.
    // A duplex stream hears `inputs`, of `frames` floats each; channels beyond them are null.
    std::vector<std::vector<float>> pump(uint32_t frames, const std::vector<std::vector<float>>& inputs = {}) {
        const auto newest = std::find_if(streams_.rbegin(), streams_.rend(), [](auto* each) { return each->running_; });
        if (newest == streams_.rend()) { return {}; }
        Stream& stream = **newest;
        stream.block_ = frames;
        constexpr float none = std::numeric_limits<float>::quiet_NaN();
        std::vector planes(size_t(stream.channels()), std::vector<float>(frames, none));
        std::vector<float*> pointers;
        for (auto& plane : planes) { pointers.push_back(plane.data()); }
        std::vector<const float*> heard(size_t(stream.input_.inputChannels), nullptr);
        for (size_t c = 0; c < std::min(heard.size(), inputs.size()); ++c) { heard[c] = inputs[c].data(); }
        stream.target_.render(frames, DeviceBuffers{pointers.data(), stream.channels(), frames, heard.data(),
                                                    stream.input_.inputChannels});
        return planes;
    }
    // What the open streams count as lost.
    void addDropouts(uint64_t count) {
        for (Stream* stream : streams_) { stream->dropouts_ += count; }
    }
    int openStreams() const { return int(streams_.size()); }
    int opened() const { return opened_; }    // streams ever opened
    int started() const { return started_; }  // starts that took a stream from standing to running

private:
    void changed() {
        loop_.post([this] { announce(); });
    }
    [[noreturn]] static void fail() { throw Error(ErrorKind::device, "Couldn't open the output device"); }

    struct Stream : OutputStream {
        Stream(ManualAudioSystem& system, AudioOutputDevice device, bool followsDefault, RenderTarget& target,
               std::function<void()> onChange)
            : device_(std::move(device)),
              followsDefault_(followsDefault),
              target_(target),
              system_(&system),
              sampleRate_(system.sampleRate_),
              onChange_(std::make_shared<std::function<void()>>(std::move(onChange))) {
            system.streams_.push_back(this);
        }
        ~Stream() override {
            if (system_) { std::erase(system_->streams_, this); }
        }
        int channels() const override { return device_.outputChannels; }
        double sampleRate() const override { return sampleRate_; }
        bool isRunning() const override { return running_; }
        bool isCurrent() const override { return current_; }
        StreamFigures figures() const override { return {double(block_) / sampleRate_, dropouts_}; }
        void pause() override { running_ = false; }
        void start() override {
            if (!system_ || system_->startingFails_) { fail(); }
            system_->started_ += running_ ? 0 : 1;
            running_ = true;
        }
        // At most once, and not after the stream has gone.
        void announceChange() {
            if (std::exchange(announced_, true)) { return; }
            system_->loop_.post([callback = std::weak_ptr(onChange_)] {
                if (const auto call = callback.lock(); call && *call) { (*call)(); }
            });
        }

        const AudioOutputDevice device_;
        AudioInputDevice input_;  // of a stream that listens
        const bool followsDefault_;
        RenderTarget& target_;
        ManualAudioSystem* system_;
        const double sampleRate_;
        const std::shared_ptr<std::function<void()>> onChange_;
        bool running_ = false, current_ = true, announced_ = false;
        uint32_t block_ = 0;  // frames of the last one
        uint64_t dropouts_ = 0;
    };

    MainLoop& loop_;
    std::vector<AudioOutputDevice> outputs_ = {{1, "manual", "Manual", 16}};
    std::vector<AudioInputDevice> inputs_;
    std::weak_ptr<std::vector<std::string>> bus_;
    bool feedsBack_ = false;
    std::optional<uint32_t> default_ = 1;
    SoundServer server_ = SoundServer::running;
    double sampleRate_ = 48000;
    bool openingFails_ = false, startingFails_ = false;
    std::vector<Stream*> streams_;  // in order of opening
    int opened_ = 0, started_ = 0;
};

}  // namespace brindlehum
