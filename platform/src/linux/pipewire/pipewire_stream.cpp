// Opening, running and closing a stream on a PipeWire sink, and on a source when it listens.
#include "pipewire_stream.h"

#include <algorithm>
#include <ctime>
#include <utility>

#include "base/error.h"

namespace brindlehum {

namespace {

const char* const cannotOpen = "Couldn't open the output device";

// The requested block in frames at 48 kHz, for what is played. It is short enough that a seek or a change of mode is
// heard within some 11 ms, and long enough that the binaural stage's transforms take a small share of a core. The
// server uses the smallest request of all clients on the device, within its own limits.
const char* const wantedLatency = "512/48000";

// The same for a stream that listens: what is played elsewhere is heard a block later.
const char* const duplexLatency = "256/48000";

// The most frames for which process waits until all links carry audio, so that the start of a sound isn't lost in a
// link that comes up late.
constexpr uint32_t linkPatience = 48000;

// Between two questions to the server of a stream that runs.
constexpr double beatSeconds = 1;

}  // namespace

PipeWireStream::PipeWireStream(std::shared_ptr<PipeWireSession> session, MainLoop& loop, const Ends& ends,
                               RenderTarget& target, std::function<void()> onChange)
    : session_(std::move(session)),
      main_(loop),
      target_(target),
      sink_(ends.device.id),
      source_(ends.input ? ends.input->id : 0),
      through_(ends.through),
      isPass_(ends.isPass),
      followsDefault_(ends.followsDefault),
      onChange_(std::make_shared<std::function<void()>>(std::move(onChange))) {
    const PipeWireLoop::Lock lock(session_->loop());
    if (session_->knownGraph().refused.erase(sink_) > 0) { throw Error(ErrorKind::device, cannotOpen); }
    sampleRate_ = session_->knownGraph().rateFor(sink_);
    try {
        const auto outputs = size_t(ends.device.outputChannels);
        makeFilter(outputs, isPass_ ? outputs : ends.input ? size_t(ends.input->inputChannels) : 0);
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

void PipeWireStream::makeFilter(size_t outputs, size_t inputs) {
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
    const bool listens = inputs > 0;
    const char* const name = isPass_ ? "brindlehum-inserts" : listens ? "brindlehum-monitor" : "brindlehum";
    const char* const description = isPass_ ? "Brindlehum Inserts" : listens ? "Brindlehum Monitor" : "Brindlehum";
    filter_ = pw_filter_new(
        session_->core(), "Brindlehum",
        pw_properties_new(PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY, listens ? "Duplex" : "Playback",
                          PW_KEY_MEDIA_ROLE, "Production", PW_KEY_NODE_NAME, name, PW_KEY_NODE_DESCRIPTION, description,
                          PW_KEY_APP_NAME, "Brindlehum", PW_KEY_NODE_AUTOCONNECT, "false", PW_KEY_NODE_LATENCY,
                          listens ? duplexLatency : wantedLatency, nullptr));
    if (!filter_) { throw Error(ErrorKind::device, cannotOpen); }
    pw_filter_add_listener(filter_, &filterHook_, &events, this);
    addPorts(ports_, outputs, SPA_DIRECTION_OUTPUT, "output_");
    addPorts(inputPorts_, inputs, SPA_DIRECTION_INPUT, "input_");
    planes_.resize(outputs);
    block_.resize(outputs);
    heard_.resize(inputs);
    heardBlock_.resize(inputs);
    rateEvent_ = pw_loop_add_event(
        session_->loop().events(), [](void* data, uint64_t) { static_cast<PipeWireStream*>(data)->rateSeen(); }, this);
    const auto flags = static_cast<pw_filter_flags>(PW_FILTER_FLAG_RT_PROCESS | PW_FILTER_FLAG_INACTIVE);
    if (pw_filter_connect(filter_, flags, nullptr, 0) < 0) { throw Error(ErrorKind::device, cannotOpen); }
}

void PipeWireStream::addPorts(std::vector<void*>& ports, size_t count, spa_direction direction, const char* prefix) {
    for (size_t c = 0; c < count; ++c) {
        const std::string name = prefix + std::to_string(c + 1);
        ports.push_back(pw_filter_add_port(
            filter_, direction, PW_FILTER_PORT_FLAG_MAP_BUFFERS, sizeof(void*),
            pw_properties_new(PW_KEY_FORMAT_DSP, "32 bit float mono audio", PW_KEY_PORT_NAME, name.c_str(), nullptr),
            nullptr, 0));
        if (!ports.back()) { throw Error(ErrorKind::device, cannotOpen); }
    }
}

// Links the ports of a stream that runs, as soon as the server has announced ours.
void PipeWireStream::makeLinks() noexcept {
    if (announced_ || !filter_ || !running_) { return; }
    linkInputs();
    linkOutputs();
}

void PipeWireStream::linkInputs() noexcept {
    if (!inputLinks_.empty() || source_ == 0) { return; }
    const uint32_t node = pw_filter_get_node_id(filter_);
    const std::vector<uint32_t> inputs = session_->knownGraph().portsOf(node, true);
    const std::vector<uint32_t> from = session_->knownGraph().portsOf(source_, false);
    if (inputs.size() != inputPorts_.size() || from.size() < inputs.size()) { return; }
    for (size_t c = 0; c < inputs.size(); ++c) { link(inputLinks_, {source_, from[c]}, {node, inputs[c]}); }
}

void PipeWireStream::link(Links& links, const PipeWireLink::End& from, const PipeWireLink::End& to) noexcept {
    links.push_back(std::make_unique<PipeWireLink>(session_->core(), from, to, [this] { refused(); }));
    if (!links.back()->isMade()) { refused(); }
}

void PipeWireStream::linkOutputs() noexcept {
    if (!links_.empty() || isPass_) { return; }
    const uint32_t node = pw_filter_get_node_id(filter_);
    const std::vector<uint32_t> outputs = session_->knownGraph().portsOf(node, false);
    const std::vector<uint32_t> inputs = session_->knownGraph().portsOf(sink_, true);
    if (outputs.size() != ports_.size() || inputs.size() != outputs.size()) { return; }
    if (through_ != 0) { return linkThrough(); }
    for (size_t c = 0; c < outputs.size(); ++c) { link(links_, {node, outputs[c]}, {sink_, inputs[c]}); }
}

// From our outputs to the node in between, and from there to the device.
void PipeWireStream::linkThrough() noexcept {
    const PipeWireGraph& graph = session_->knownGraph();
    const uint32_t node = pw_filter_get_node_id(filter_);
    const std::vector<uint32_t> from = graph.portsOf(node, false);
    const std::vector<uint32_t> in = graph.portsOf(through_, true);
    const std::vector<uint32_t> out = graph.portsOf(through_, false);
    const std::vector<uint32_t> to = graph.portsOf(sink_, true);
    if (in.size() != from.size() || out.size() != to.size()) { return; }
    wasThere_ = true;
    for (size_t c = 0; c < to.size(); ++c) { link(links_, {through_, out[c]}, {sink_, to[c]}); }
    for (size_t c = 0; c < from.size(); ++c) { link(links_, {node, from[c]}, {through_, in[c]}); }
}

uint32_t PipeWireStream::node() const {
    const PipeWireLoop::Lock lock(session_->loop());
    const uint32_t id = filter_ && !session_->isDead() ? pw_filter_get_node_id(filter_) : SPA_ID_INVALID;
    return id == SPA_ID_INVALID ? 0 : id;
}

void PipeWireStream::refused() noexcept {
    // A sink that has just gone takes its links along, which is no refusal.
    if (!announced_ && !session_->isDead()) { session_->knownGraph().refused.insert(sink_); }
    announceChange();
}

void PipeWireStream::close() {
    links_.clear();
    inputLinks_.clear();
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
    cycles_.reset();
    running_ = true;
    pw_filter_set_active(filter_, true);
    makeLinks();
    session_->beat(main_.now());
    beat_ = main_.every(beatSeconds, [this] { session_->beat(main_.now()); });
}

void PipeWireStream::pause() {
    if (!running_.exchange(false)) { return; }
    beat_.reset();
    const PipeWireLoop::Lock lock(session_->loop());
    session_->loop().waitForProcess();
    if (session_->isDead()) { return; }
    pw_filter_set_active(filter_, false);
    // The server goes on waking up a filter that is linked, and keeps its device awake.
    links_.clear();
    inputLinks_.clear();
}

void PipeWireStream::graphChanged() noexcept {
    const PipeWireGraph& graph = session_->knownGraph();
    if (session_->isDead() || session_->isSilent() || graph.portsOf(sink_, true).size() != ports_.size() ||
        (followsDefault_ && graph.defaultOutput() != sink_)) {
        return announceChange();
    }
    if (source_ != 0 && graph.portsOf(source_, false).size() < inputPorts_.size()) { return announceChange(); }
    if (wasThere_ && !graph.nodes.contains(through_)) { return announceChange(); }
    if (howls(graph)) {
        deaf_ = true;
        return announceChange();
    }
    makeLinks();
}

// What we play comes back to what we hear, by way of others.
bool PipeWireStream::howls(const PipeWireGraph& graph) const noexcept {
    if (inputPorts_.empty() || !filter_) { return false; }
    return graph.reaches(sink_, pw_filter_get_node_id(filter_)) || (source_ != 0 && graph.reaches(sink_, source_)) ||
           (through_ != 0 && graph.reaches(sink_, through_));
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
    for (size_t c = 0; c < inputPorts_.size(); ++c) {
        auto* const plane = static_cast<const float*>(pw_filter_get_dsp_buffer(inputPorts_[c], frames));
        heard_[c] = deaf_ ? nullptr : plane;
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
    const spa_io_clock& clock = position.clock;
    const bool inTime = (clock.flags & SPA_IO_CLOCK_FLAG_FREEWHEEL) == 0;
    const uint64_t lost = cycles_.begin({clock.id, clock.position, clock.duration, inTime ? clock.next_nsec : 0});
    if (primed_) { dropouts_ += lost + (complete ? 0 : 1); }
    primed_ = true;
    if (rate > 0) { blockSeconds_ = frames / rate; }
    renderCycle(frames);
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    cycles_.end(uint64_t(SPA_TIMESPEC_TO_NSEC(&now)));
}

void PipeWireStream::renderCycle(uint32_t frames) noexcept {
    for (uint32_t done = 0; done < frames; done += largestBlock) {
        const uint32_t part = std::min(largestBlock, frames - done);
        for (size_t c = 0; c < planes_.size(); ++c) { block_[c] = planes_[c] ? planes_[c] + done : nullptr; }
        for (size_t c = 0; c < heard_.size(); ++c) { heardBlock_[c] = heard_[c] ? heard_[c] + done : nullptr; }
        target_.render(part, DeviceBuffers{block_.data(), int32_t(block_.size()), part, heardBlock_.data(),
                                           int32_t(heardBlock_.size())});
    }
}

}  // namespace brindlehum
