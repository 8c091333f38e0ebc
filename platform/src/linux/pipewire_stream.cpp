// Opening, running and closing a stream on a PipeWire sink.
#include "pipewire_stream.h"

#include <algorithm>
#include <utility>

#include "base/error.h"

namespace brindlehum {

namespace {

const char* const cannotOpen = "Couldn't open the output device";

// The requested block in frames at 48 kHz. It is short enough that a seek or a change of mode is heard within some 11
// ms, and long enough that the binaural stage's transforms take a small share of a core. The server uses the smallest
// request of all clients on the device, within its own limits.
const char* const wantedLatency = "512/48000";

// The most frames for which process waits until all links carry audio, so that the start of a sound isn't lost in a
// link that comes up late.
constexpr uint32_t linkPatience = 48000;

}  // namespace

// A link of two ports; the destructor removes it.
struct PipeWireStream::Link {
    PipeWireStream& stream;
    pw_proxy* proxy = nullptr;
    spa_hook hook{};

    Link(PipeWireStream& owner, pw_core* core, uint32_t outputNode, uint32_t outputPort, uint32_t inputNode,
         uint32_t inputPort)
        : stream(owner) {
        static const pw_proxy_events events = [] {
            pw_proxy_events made{};
            made.version = PW_VERSION_PROXY_EVENTS;
            made.error = [](void* data, int, int, const char*) { static_cast<Link*>(data)->stream.refused(); };
            return made;
        }();
        pw_properties* properties = pw_properties_new(nullptr, nullptr);
        pw_properties_setf(properties, PW_KEY_LINK_OUTPUT_NODE, "%u", outputNode);
        pw_properties_setf(properties, PW_KEY_LINK_OUTPUT_PORT, "%u", outputPort);
        pw_properties_setf(properties, PW_KEY_LINK_INPUT_NODE, "%u", inputNode);
        pw_properties_setf(properties, PW_KEY_LINK_INPUT_PORT, "%u", inputPort);
        proxy = static_cast<pw_proxy*>(
            pw_core_create_object(core, "link-factory", PW_TYPE_INTERFACE_Link, PW_VERSION_LINK, &properties->dict, 0));
        pw_properties_free(properties);
        if (proxy) { pw_proxy_add_listener(proxy, &hook, &events, this); }
    }
    ~Link() {
        if (!proxy) { return; }
        spa_hook_remove(&hook);
        pw_proxy_destroy(proxy);
    }
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;
};

PipeWireStream::PipeWireStream(std::shared_ptr<PipeWireSession> session, MainLoop& loop,
                               const AudioOutputDevice& device, bool followsDefault, RenderTarget& target,
                               std::function<void()> onChange)
    : session_(std::move(session)),
      main_(loop),
      target_(target),
      sink_(device.id),
      followsDefault_(followsDefault),
      onChange_(std::make_shared<std::function<void()>>(std::move(onChange))) {
    const PipeWireLoop::Lock lock(session_->loop());
    if (session_->knownGraph().refused.erase(sink_) > 0) { throw Error(ErrorKind::device, cannotOpen); }
    sampleRate_ = session_->knownGraph().rateFor(sink_);
    try {
        makeFilter(size_t(device.outputChannels));
    } catch (const Error&) {
        close();
        throw;
    }
    session_->addListener(*this);
    graphChanged();  // the graph may have changed meanwhile
}

PipeWireStream::~PipeWireStream() {
    PipeWireStream::pause();
    const PipeWireLoop::Lock lock(session_->loop());
    session_->removeListener(*this);
    close();
}

void PipeWireStream::makeFilter(size_t channels) {
    static const pw_filter_events events = [] {
        pw_filter_events made{};
        made.version = PW_VERSION_FILTER_EVENTS;
        made.state_changed = [](void* data, pw_filter_state, pw_filter_state now, const char*) {
            auto& stream = *static_cast<PipeWireStream*>(data);
            if (now == PW_FILTER_STATE_ERROR) { return stream.announceChange(); }
            stream.makeLinks();
        };
        made.process = [](void* data, spa_io_position* position) {
            if (position) { static_cast<PipeWireStream*>(data)->process(*position); }
        };
        return made;
    }();
    // Set no media.class: a session manager then leaves the node's links to its owner.
    filter_ =
        pw_filter_new(session_->core(), "Brindlehum",
                      pw_properties_new(PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY, "Playback",
                                        PW_KEY_MEDIA_ROLE, "Production", PW_KEY_NODE_NAME, "brindlehum",
                                        PW_KEY_NODE_DESCRIPTION, "Brindlehum", PW_KEY_APP_NAME, "Brindlehum",
                                        PW_KEY_NODE_AUTOCONNECT, "false", PW_KEY_NODE_LATENCY, wantedLatency, nullptr));
    if (!filter_) { throw Error(ErrorKind::device, cannotOpen); }
    pw_filter_add_listener(filter_, &filterHook_, &events, this);
    for (size_t c = 0; c < channels; ++c) {
        const std::string name = "output_" + std::to_string(c + 1);
        ports_.push_back(pw_filter_add_port(
            filter_, SPA_DIRECTION_OUTPUT, PW_FILTER_PORT_FLAG_MAP_BUFFERS, sizeof(void*),
            pw_properties_new(PW_KEY_FORMAT_DSP, "32 bit float mono audio", PW_KEY_PORT_NAME, name.c_str(), nullptr),
            nullptr, 0));
        if (!ports_.back()) { throw Error(ErrorKind::device, cannotOpen); }
    }
    planes_.resize(channels);
    block_.resize(channels);
    rateEvent_ = pw_loop_add_event(
        session_->loop().events(), [](void* data, uint64_t) { static_cast<PipeWireStream*>(data)->rateSeen(); }, this);
    const auto flags = static_cast<pw_filter_flags>(PW_FILTER_FLAG_RT_PROCESS | PW_FILTER_FLAG_INACTIVE);
    if (pw_filter_connect(filter_, flags, nullptr, 0) < 0) { throw Error(ErrorKind::device, cannotOpen); }
}

// Links the ports as soon as the server has announced ours.
void PipeWireStream::makeLinks() noexcept {
    if (!links_.empty() || announced_ || !filter_) { return; }
    const uint32_t node = pw_filter_get_node_id(filter_);
    const std::vector<uint32_t> outputs = session_->knownGraph().portsOf(node, false);
    const std::vector<uint32_t> inputs = session_->knownGraph().portsOf(sink_, true);
    if (outputs.size() != ports_.size() || inputs.size() != outputs.size()) { return; }
    for (size_t c = 0; c < outputs.size(); ++c) {
        links_.push_back(std::make_unique<Link>(*this, session_->core(), node, outputs[c], sink_, inputs[c]));
        if (!links_.back()->proxy) { return refused(); }
    }
}

void PipeWireStream::refused() noexcept {
    // A sink that has just gone takes its links along, which is no refusal.
    if (!announced_ && !session_->isDead()) { session_->knownGraph().refused.insert(sink_); }
    announceChange();
}

void PipeWireStream::close() {
    links_.clear();
    // Destroying it reports a change of state, and a filter that is still known would then be linked once more.
    if (pw_filter* filter = std::exchange(filter_, nullptr)) { pw_filter_destroy(filter); }
    if (rateEvent_) { pw_loop_destroy_source(session_->loop().events(), rateEvent_); }
    rateEvent_ = nullptr;
}

void PipeWireStream::start() {
    if (running_) { return; }
    const PipeWireLoop::Lock lock(session_->loop());
    if (session_->isDead()) { throw Error(ErrorKind::device, cannotOpen); }
    primed_ = false;
    waited_ = 0;
    running_ = true;
    pw_filter_set_active(filter_, true);
}

void PipeWireStream::pause() {
    if (!running_.exchange(false)) { return; }
    const PipeWireLoop::Lock lock(session_->loop());
    session_->loop().waitForProcess();
    if (!session_->isDead()) { pw_filter_set_active(filter_, false); }
}

void PipeWireStream::graphChanged() noexcept {
    const PipeWireGraph& graph = session_->knownGraph();
    if (session_->isDead() || session_->isSilent() || graph.portsOf(sink_, true).size() != ports_.size() ||
        (followsDefault_ && graph.defaultOutput() != sink_)) {
        return announceChange();
    }
    makeLinks();
}

void PipeWireStream::announceChange() noexcept {
    if (announced_) { return; }
    announced_ = true;
    main_.post([callback = std::weak_ptr(onChange_)] {
        if (const auto call = callback.lock(); call && *call) { (*call)(); }
    });
}

void PipeWireStream::rateSeen() noexcept {
    session_->knownGraph().observedRates[sink_] = runningRate_;
    announceChange();
}

// Fetches and clears the buffers of the ports; true when every port has one.
bool PipeWireStream::fetchPlanes(uint32_t frames) noexcept {
    bool complete = true;
    for (size_t c = 0; c < ports_.size(); ++c) {
        planes_[c] = static_cast<float*>(pw_filter_get_dsp_buffer(ports_[c], frames));
        if (planes_[c]) { std::fill_n(planes_[c], frames, 0.0F); }
        complete = complete && planes_[c];
    }
    return complete;
}

void PipeWireStream::process(const spa_io_position& position) noexcept {
    const auto frames = uint32_t(std::min<uint64_t>(position.clock.duration, largestQuantum));
    const bool complete = fetchPlanes(frames);
    if (!running_) { return; }
    const spa_fraction& unit = position.clock.rate;
    const double rate = unit.num > 0 ? double(unit.denom) / unit.num : 0;
    if (rate > 0 && rate != sampleRate_) {
        // Play silence rather than the wrong pitch, until the device is reopened.
        if (runningRate_.exchange(rate) != rate) { pw_loop_signal_event(session_->loop().events(), rateEvent_); }
        return;
    }
    if (!primed_ && !complete && (waited_ += frames) < linkPatience) { return; }
    primed_ = true;
    for (uint32_t done = 0; done < frames; done += largestBlock) {
        const uint32_t part = std::min(largestBlock, frames - done);
        for (size_t c = 0; c < planes_.size(); ++c) { block_[c] = planes_[c] ? planes_[c] + done : nullptr; }
        target_.render(part, DeviceBuffers{block_.data(), int32_t(block_.size()), part});
    }
}

}  // namespace brindlehum
