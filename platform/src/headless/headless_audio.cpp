// The headless output's thread, paced by the clock.
#include "platform/headless_audio.h"

#include <pthread.h>

#include <array>
#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "base/error.h"

namespace brindlehum {

namespace {

class HeadlessStream : public OutputStream {
public:
    HeadlessStream(RenderTarget& target, int inputs) : target_(target), heard_(size_t(inputs), silence_.data()) {
        for (int c = 0; c < HeadlessAudioSystem::channels; ++c) {
            planes_[c] = samples_.data() + size_t(c) * HeadlessAudioSystem::blockFrames;
        }
    }
    ~HeadlessStream() override { HeadlessStream::pause(); }

    int channels() const override { return HeadlessAudioSystem::channels; }
    double sampleRate() const override { return HeadlessAudioSystem::sampleRate; }
    bool isRunning() const override { return thread_.joinable(); }
    bool isCurrent() const override { return true; }
    StreamFigures figures() const override {
        return {HeadlessAudioSystem::blockFrames / HeadlessAudioSystem::sampleRate, 0};
    }

    void start() override {
        if (thread_.joinable()) { return; }
        ending_ = false;
        thread_ = std::thread([this] { run(); });
    }

    void pause() override {
        if (!thread_.joinable()) { return; }
        ending_ = true;
        thread_.join();
    }

private:
    using Clock = std::chrono::steady_clock;
    // The largest delay that is caught up. After a longer one (the machine slept), the pace restarts from now.
    static constexpr std::chrono::milliseconds patience{200};

    void run() {
        pthread_setname_np(pthread_self(), "headless-out");
        const DeviceBuffers buffers{planes_.data(), HeadlessAudioSystem::channels, HeadlessAudioSystem::blockFrames,
                                    heard_.data(), int32_t(heard_.size())};
        Clock::time_point origin = Clock::now();
        for (int64_t block = 0; !ending_; ++block) {
            target_.render(buffers.frames, buffers);
            // Count from the origin, so that rounding errors don't add up.
            const int64_t frames = (block + 1) * HeadlessAudioSystem::blockFrames;
            const auto due =
                origin + std::chrono::nanoseconds(frames * 1'000'000'000 / int64_t(HeadlessAudioSystem::sampleRate));
            if (Clock::now() - due > patience) {
                origin = Clock::now();
                block = -1;
            } else {
                std::this_thread::sleep_until(due);
            }
        }
    }

    RenderTarget& target_;
    std::array<float, size_t(HeadlessAudioSystem::channels) * HeadlessAudioSystem::blockFrames> samples_{};
    std::array<float*, HeadlessAudioSystem::channels> planes_{};
    std::array<float, HeadlessAudioSystem::blockFrames> silence_{};
    std::vector<const float*> heard_;
    std::atomic<bool> ending_ = false;
    std::thread thread_;
};

}  // namespace

std::vector<AudioOutputDevice> HeadlessAudioSystem::allOutputs() {
    return {{deviceID, uid, name, channels}};
}

std::unique_ptr<OutputStream> HeadlessAudioSystem::openOutput(uint32_t id, bool, RenderTarget& target,
                                                              std::function<void()>) {
    if (id != deviceID) { throw Error(ErrorKind::device, "Couldn't open the output device"); }
    return std::make_unique<HeadlessStream>(target, 0);
}

std::vector<AudioInputDevice> HeadlessAudioSystem::allInputs() {
    std::vector<AudioInputDevice> inputs = {{inputID, inputUID, "Headless input (silence)", channels}};
    if (const auto bus = bus_.lock()) {
        inputs.push_back({inputID, busUID, "Monitor of Brindlehum Bus", int(bus->size()), *bus});
    }
    inputs.push_back({0, openPortsUID, "Open ports (nothing can be patched)", channels});
    return inputs;
}

std::unique_ptr<OutputStream> HeadlessAudioSystem::openDuplex(const DuplexRequest& request, RenderTarget& target,
                                                              std::function<void()>) {
    if (request.output != deviceID) { throw Error(ErrorKind::device, "Couldn't open the output device"); }
    return std::make_unique<HeadlessStream>(target, request.input.inputChannels);
}

std::unique_ptr<PassStream> HeadlessAudioSystem::openPass(uint32_t /*output*/, RenderTarget& /*target*/,
                                                          std::function<void()> /*onChange*/) {
    throw Error(ErrorKind::device, "Inserts need a sound server");
}

std::shared_ptr<void> HeadlessAudioSystem::makeBus(const std::vector<std::string>& positions) {
    auto bus = std::make_shared<std::vector<std::string>>(positions);
    bus_ = bus;
    return bus;
}

}  // namespace brindlehum
