// Chooses between the sound server and the headless output, and notices when that choice changes.
#include "platform/linux_audio.h"

#include <algorithm>
#include <atomic>

#include "base/error.h"
#include "pipewire_bus.h"
#include "pipewire_session.h"
#include "pipewire_stream.h"
#include "platform/headless_audio.h"

namespace brindlehum {

namespace {

constexpr double beatSeconds = 1;  // between two looks at a question that waits, or two attempts to find a server

// A headless stream that stops being current when a sound server answers.
class InterimStream : public OutputStream {
public:
    InterimStream(std::unique_ptr<OutputStream> stream, std::function<bool()> serverRuns)
        : stream_(std::move(stream)), serverRuns_(std::move(serverRuns)) {}
    int channels() const override { return stream_->channels(); }
    double sampleRate() const override { return stream_->sampleRate(); }
    void start() override { stream_->start(); }
    void pause() override { stream_->pause(); }
    bool isRunning() const override { return stream_->isRunning(); }
    bool isCurrent() const override { return !serverRuns_(); }
    StreamFigures figures() const override { return stream_->figures(); }

private:
    std::unique_ptr<OutputStream> stream_;
    std::function<bool()> serverRuns_;
};

// Each running stream asks the server for signs of life, and so does a look at its state. At rest nothing wakes up.
class LinuxAudio : public AudioSystem, public DuplexAudio, private PipeWireListener {
public:
    explicit LinuxAudio(MainLoop& loop) : main_(loop) {
        connect();
        keepBeating();
        // The one wait for a server: the first question about the outputs comes at once.
        if (session_) { session_->waitForAnswer(); }
        known_ = state();
    }

    ~LinuxAudio() override { disconnect(); }

    std::vector<AudioOutputDevice> allOutputs() override {
        return running() ? session_->graph().outputs() : headless_.allOutputs();
    }

    std::optional<uint32_t> defaultOutput() override {
        return running() ? session_->graph().defaultOutput() : headless_.defaultOutput();
    }

    SoundServer server() override {
        if (session_ && main_.now() - lookedAt_ >= beatSeconds) {
            lookedAt_ = main_.now();
            session_->beat(lookedAt_);
            keepBeating();
        }
        return serverNow();
    }

    std::unique_ptr<OutputStream> openOutput(uint32_t id, bool followsDefault, RenderTarget& target,
                                             std::function<void()> onChange) override {
        if (!running()) {
            return std::make_unique<InterimStream>(
                headless_.openOutput(id, followsDefault, target, std::move(onChange)), [this] { return running(); });
        }
        const PipeWireStream::Ends ends{output(id), followsDefault};
        return std::make_unique<PipeWireStream>(session_, main_, ends, target, std::move(onChange));
    }

    DuplexAudio* duplex() override { return running() ? this : nullptr; }

    std::vector<AudioInputDevice> allInputs() override {
        return inputsOf(running() ? session_->graph() : PipeWireGraph());
    }

    bool feedsBack(const AudioInputDevice& input, uint32_t output) override {
        return running() && input.id != 0 && session_->graph().reaches(output, input.id);
    }

    std::unique_ptr<OutputStream> openDuplex(const DuplexRequest& request, RenderTarget& target,
                                             std::function<void()> onChange) override {
        const PipeWireStream::Ends ends{output(request.output), request.followsDefault, request.input, request.through};
        return std::make_unique<PipeWireStream>(session_, main_, ends, target, std::move(onChange));
    }

    std::unique_ptr<PassStream> openPass(uint32_t id, RenderTarget& target, std::function<void()> onChange) override {
        PipeWireStream::Ends ends{output(id)};
        ends.isPass = true;
        return std::make_unique<PipeWireStream>(session_, main_, ends, target, std::move(onChange));
    }

    std::shared_ptr<void> makeBus(const std::vector<std::string>& positions) override {
        const auto wanted = std::shared_ptr<Positions>(new Positions(positions),
                                                       [this, alive = std::weak_ptr(checkWaits_)](Positions* gone) {
                                                           delete gone;
                                                           if (alive.lock()) { keepBus(); }
                                                       });
        wantedBus_ = wanted;
        keepBus();
        return wanted;
    }

private:
    static constexpr int openPorts = 16;
    using Positions = std::vector<std::string>;

    struct State {
        SoundServer server = SoundServer::absent;
        std::vector<AudioOutputDevice> outputs;
        std::optional<uint32_t> standard;
        std::vector<AudioInputDevice> inputs;
        bool operator==(const State&) const = default;
    };

    // Throws Error (device) when the server has none of this id.
    AudioOutputDevice output(uint32_t id) {
        const auto outputs = running() ? session_->graph().outputs() : std::vector<AudioOutputDevice>();
        const auto device = std::ranges::find(outputs, id, &AudioOutputDevice::id);
        if (device == outputs.end()) { throw Error(ErrorKind::device, "Couldn't open the output device"); }
        return *device;
    }
    SoundServer serverNow() { return session_ ? session_->state() : SoundServer::absent; }
    bool running() { return serverNow() == SoundServer::running; }
    // From one copy of the graph.
    State state() {
        if (!running()) { return {serverNow(), headless_.allOutputs(), headless_.defaultOutput(), {}}; }
        const PipeWireGraph graph = session_->graph();
        return {SoundServer::running, graph.outputs(), graph.defaultOutput(), inputsOf(graph)};
    }
    static std::vector<AudioInputDevice> inputsOf(const PipeWireGraph& graph) {
        auto inputs = graph.inputs();
        inputs.push_back({0, openPortsUID, "Open ports (patch them yourself)", openPorts});
        return inputs;
    }

    void connect() {
        if (!library_) { library_ = PipeWireLoop::make(); }
        if (library_) { session_ = PipeWireSession::connect(library_, main_.now()); }
        if (!session_) { return; }
        const PipeWireLoop::Lock lock(session_->loop());
        session_->addListener(*this);
    }

    // Makes the bus that is wanted on this connection, or removes the one that isn't any more.
    void keepBus() {
        const auto wanted = wantedBus_.lock();
        if (wanted != madeBus_.lock() || !wanted || !session_) { bus_.reset(); }
        if (!bus_ && wanted && session_) { bus_.emplace(session_, *wanted); }
        madeBus_ = bus_ ? wanted : nullptr;
    }

    void disconnect() {
        bus_.reset();
        if (!session_) { return; }
        {
            const PipeWireLoop::Lock lock(session_->loop());
            session_->removeListener(*this);
        }
        session_.reset();
    }

    // Until the server has answered.
    void keepBeating() {
        if (!beat_) {
            beat_ = main_.every(beatSeconds, [this] { beat(); });
        }
    }

    void beat() {
        if (session_ && session_->isDead()) { disconnect(); }
        if (!session_) {
            connect();
            keepBus();
        } else if (session_->waits()) {
            session_->beat(main_.now());
        } else {
            beat_.reset();
        }
        check();
    }

    void check() {
        if (!session_ || session_->isDead()) { keepBeating(); }
        State now = state();
        if (now == known_) { return; }
        known_ = std::move(now);
        announce();
    }

    // On the library's thread.
    void graphChanged() noexcept override {
        if (checkWaits_->exchange(true)) { return; }
        main_.post([this, waits = std::weak_ptr(checkWaits_)] {
            const auto alive = waits.lock();
            if (!alive) { return; }
            *alive = false;
            check();
        });
    }

    MainLoop& main_;
    HeadlessAudioSystem headless_;
    std::shared_ptr<PipeWireLoop> library_;
    std::shared_ptr<PipeWireSession> session_;
    // The names of the channels of the bus that somebody holds, and of the one that is made.
    std::weak_ptr<Positions> wantedBus_, madeBus_;
    std::optional<PipeWireBus> bus_;
    State known_;  // as last announced
    // A check is posted; dies with this, so that a late one is dropped.
    std::shared_ptr<std::atomic<bool>> checkWaits_ = std::make_shared<std::atomic<bool>>(false);
    double lookedAt_ = 0;  // seconds
    TimerHandle beat_;
};

}  // namespace

std::unique_ptr<AudioSystem> makeAudioSystem(MainLoop& loop) {
    return std::make_unique<LinuxAudio>(loop);
}

}  // namespace brindlehum
