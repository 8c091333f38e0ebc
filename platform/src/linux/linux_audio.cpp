// Chooses between the sound server and the headless output, again at each call.
#include "platform/linux_audio.h"

#include <algorithm>
#include <chrono>

#include "base/error.h"
#include "pipewire_session.h"
#include "pipewire_stream.h"
#include "platform/headless_audio.h"

namespace brindlehum {

namespace {

// A headless stream that stops being current when a sound server appears.
class InterimStream : public OutputStream {
public:
    InterimStream(std::unique_ptr<OutputStream> stream, std::function<bool()> serverIsThere)
        : stream_(std::move(stream)), serverIsThere_(std::move(serverIsThere)) {}
    int channels() const override { return stream_->channels(); }
    double sampleRate() const override { return stream_->sampleRate(); }
    void start() override { stream_->start(); }
    void pause() override { stream_->pause(); }
    bool isRunning() const override { return stream_->isRunning(); }
    bool isCurrent() const override { return !serverIsThere_(); }

private:
    std::unique_ptr<OutputStream> stream_;
    std::function<bool()> serverIsThere_;
};

class LinuxAudio : public AudioSystem {
public:
    explicit LinuxAudio(MainLoop& loop) : main_(loop) {}

    std::vector<AudioOutputDevice> allOutputs() override {
        return server() ? graph().outputs() : headless_.allOutputs();
    }

    std::optional<uint32_t> defaultOutput() override {
        return server() ? graph().defaultOutput() : headless_.defaultOutput();
    }

    std::unique_ptr<OutputStream> openOutput(uint32_t id, bool followsDefault, RenderTarget& target,
                                             std::function<void()> onChange) override {
        if (!server()) {
            return std::make_unique<InterimStream>(
                headless_.openOutput(id, followsDefault, target, std::move(onChange)), [this] { return server(); });
        }
        const auto outputs = graph().outputs();
        const auto device = std::ranges::find(outputs, id, &AudioOutputDevice::id);
        if (device == outputs.end()) { throw Error(ErrorKind::device, "Couldn't open the output device"); }
        return std::make_unique<PipeWireStream>(session_, main_, *device, followsDefault, target, std::move(onChange));
    }

private:
    // How long to wait before trying a server again that accepted the connection but didn't answer.
    static constexpr std::chrono::seconds silence{2};

    // True when a session works; tries to connect if there is none.
    bool server() {
        if (session_ && session_->isAlive()) { return true; }
        session_.reset();
        if (std::chrono::steady_clock::now() < nextTry_) { return false; }
        if (!library_) { library_ = PipeWireLoop::make(); }
        if (!library_) { return false; }
        PipeWireSession::Failure failure{};
        session_ = PipeWireSession::connect(library_, failure);
        if (failure == PipeWireSession::Failure::silent) { nextTry_ = std::chrono::steady_clock::now() + silence; }
        return session_ != nullptr;
    }

    PipeWireGraph graph() { return session_->update() ? session_->graph() : PipeWireGraph(); }

    MainLoop& main_;
    HeadlessAudioSystem headless_;
    std::shared_ptr<PipeWireLoop> library_;
    std::shared_ptr<PipeWireSession> session_;
    std::chrono::steady_clock::time_point nextTry_;
};

}  // namespace

std::unique_ptr<AudioSystem> makeAudioSystem(MainLoop& loop) {
    return std::make_unique<LinuxAudio>(loop);
}

}  // namespace brindlehum
