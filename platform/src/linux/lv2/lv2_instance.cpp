// Connects an effect's ports, runs it, and speaks to it by atoms.
#include "lv2_instance.h"

#include <lv2/atom/atom.h>
#include <lv2/atom/forge.h>
#include <lv2/atom/util.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/parameters/parameters.h>
#include <lv2/patch/patch.h>
#include <lv2/state/state.h>

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "base/error.h"
#include "base/stored_path.h"
#include "lv2_window.h"
#include "platform/linux_plugins.h"

namespace brindlehum {
namespace {

constexpr int32_t nominalFrames = 256;
constexpr int32_t atomBytes = 1 << 16;
constexpr uint32_t warmUpFrames = 256;

int print(LV2_Log_Handle /*self*/, LV2_URID /*type*/, const char* format, va_list words) {
    return std::vfprintf(stderr, format, words);
}

int printWords(LV2_Log_Handle self, LV2_URID type, const char* format, ...) {
    va_list words;
    va_start(words, format);
    const int written = print(self, type, format, words);
    va_end(words);
    return written;
}

const char* const stateName = "urn:brindlehum:insert";

struct StateDeleter {
    void operator()(LilvState* state) const { lilv_state_free(state); }
};
using State = std::unique_ptr<LilvState, StateDeleter>;

}  // namespace

Lv2Instance::Lv2Instance(std::shared_ptr<Lv2Shared> shared, const PluginInfo& info, double sampleRate,
                         const PluginSettings& settings)
    : shared_(std::move(shared)),
      plugin_(shared_->world.plugin(info.uri)),
      silence_(PluginHost::maxFrames),
      unwanted_(PluginHost::maxFrames),
      wanted_(info.controls.size()),
      reports_(plugin_ ? lilv_plugin_get_num_ports(plugin_) : 0) {
    if (!plugin_) { throw Error("It isn't installed"); }
    for (uint32_t i = 0; i < lilv_plugin_get_num_ports(plugin_); ++i) {
        const LilvPort* const port = lilv_plugin_get_port_by_index(plugin_, i);
        ports_.push_back({shared_->world.kindOf(plugin_, port), i});
        if (shared_->world.isUsersControl(plugin_, port)) { controlPorts_.push_back(i); }
    }
    const LilvPort* const control = lilv_plugin_get_port_by_designation(
        plugin_, shared_->world.uri(LV2_CORE__InputPort).get(), shared_->world.uri(LV2_CORE__control).get());
    const auto atoms = std::ranges::find(ports_, Lv2PortKind::atomIn, &Port::kind);
    messagePort_ = control                 ? int(lilv_port_get_index(plugin_, control))
                   : atoms != ports_.end() ? int(atoms->index)
                                           : -1;
    if (lilv_plugin_has_latency(plugin_)) { latencyPort_ = int(lilv_plugin_get_latency_port_index(plugin_)); }
    makeOptions(sampleRate);
    instance_ = lilv_plugin_instantiate(plugin_, sampleRate, features().data());
    if (!instance_) { throw Error("It doesn't start"); }
    worker_.attach(instance_);
    numbers_.resize(ports_.size());
    for (size_t i = 0; i < wanted_.size(); ++i) {
        const auto set = settings.values.find(info.controls[i].symbol);
        Lv2Instance::setControl(
            i, info.controls[i].heard(set == settings.values.end() ? info.controls[i].rest : set->second));
    }
    connect();
    restore(settings.state);
    for (const auto& [uri, path] : settings.files) { Lv2Instance::setFile(uri, path); }
    lilv_instance_activate(instance_);
    // Without a block it doesn't know its latency. It forgets the block again.
    const std::vector<const float*> inputs(size_t(info.inputs), nullptr);
    const std::vector<float*> outputs(size_t(info.outputs), nullptr);
    Lv2Instance::process(inputs.data(), outputs.data(), warmUpFrames);
    lilv_instance_deactivate(instance_);
    lilv_instance_activate(instance_);
    worker_.start();
}

Lv2Instance::~Lv2Instance() {
    worker_.stop();
    if (!instance_) { return; }
    lilv_instance_deactivate(instance_);
    lilv_instance_free(instance_);
}

void Lv2Instance::makeOptions(double sampleRate) {
    Lv2Urids& urids = shared_->urids;
    minFrames_ = 1;
    maxFrames_ = int32_t(PluginHost::maxFrames);
    nominalFrames_ = nominalFrames;
    sequenceBytes_ = atomBytes;
    rate_ = float(sampleRate);
    const auto whole = [&](const char* key, const int32_t& value) {
        options_.push_back({LV2_OPTIONS_INSTANCE, 0, urids.map(key), sizeof value, urids.map(LV2_ATOM__Int), &value});
    };
    whole(LV2_BUF_SIZE__minBlockLength, minFrames_);
    whole(LV2_BUF_SIZE__maxBlockLength, maxFrames_);
    whole(LV2_BUF_SIZE__nominalBlockLength, nominalFrames_);
    whole(LV2_BUF_SIZE__sequenceSize, sequenceBytes_);
    options_.push_back({LV2_OPTIONS_INSTANCE, 0, urids.map(LV2_PARAMETERS__sampleRate), sizeof rate_,
                        urids.map(LV2_ATOM__Float), &rate_});
    options_.push_back({LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr});
    sequence_ = urids.map(LV2_ATOM__Sequence);
    chunk_ = urids.map(LV2_ATOM__Chunk);
    log_.printf = printWords;
    log_.vprintf = print;
}

std::array<const LV2_Feature*, 11> Lv2Instance::features() {
    offered_ = {{LV2_URID__map, shared_->urids.mapFeature()},
                {LV2_URID__unmap, shared_->urids.unmapFeature()},
                {LV2_OPTIONS__options, options_.data()},
                {LV2_WORKER__schedule, worker_.feature()},
                {LV2_LOG__log, &log_},
                {LV2_BUF_SIZE__boundedBlockLength, nullptr},
                {LV2_CORE__isLive, nullptr},
                {LV2_CORE__inPlaceBroken, nullptr},
                {LV2_CORE__hardRTCapable, nullptr},
                {LV2_STATE__loadDefaultState, nullptr}};
    std::array<const LV2_Feature*, 11> all{};
    for (size_t i = 0; i < offered_.size(); ++i) { all[i] = &offered_[i]; }
    return all;
}

void Lv2Instance::connect() {
    for (const Port& port : ports_) {
        switch (port.kind) {
            case Lv2PortKind::controlIn:
            case Lv2PortKind::controlOut:
                numbers_[port.index] =
                    float(shared_->world.restOf(plugin_, lilv_plugin_get_port_by_index(plugin_, port.index)));
                lilv_instance_connect_port(instance_, port.index, &numbers_[port.index]);
                break;
            case Lv2PortKind::sideChainIn:
            case Lv2PortKind::cvIn:
                lilv_instance_connect_port(instance_, port.index, silence_.data());
                break;
            case Lv2PortKind::cvOut:
                lilv_instance_connect_port(instance_, port.index, unwanted_.data());
                break;
            case Lv2PortKind::atomIn:
            case Lv2PortKind::atomOut:
                atoms_.push_back({port.index, port.kind == Lv2PortKind::atomIn,
                                  std::vector<uint64_t>(size_t(atomBytes) / sizeof(uint64_t) + 2)});
                lilv_instance_connect_port(instance_, port.index, atoms_.back().bytes.data());
                break;
            case Lv2PortKind::none:
                lilv_instance_connect_port(instance_, port.index, nullptr);
                break;
            case Lv2PortKind::audioIn:
            case Lv2PortKind::audioOut:
                break;  // in each block
        }
    }
}

// A text that isn't ours is as good as none.
void Lv2Instance::restore(const std::string& text) {
    Lv2World& world = shared_->world;
    LV2_URID_Map* const map = shared_->urids.mapFeature();
    State state;
    if (!text.empty()) {
        state.reset(lilv_state_new_from_string(world.raw(), map, text.c_str()));
    } else if (lilv_plugin_has_feature(plugin_, world.uri(LV2_STATE__loadDefaultState).get())) {
        state.reset(lilv_state_new_from_world(world.raw(), map, lilv_plugin_get_uri(plugin_)));
    }
    if (state) { lilv_state_restore(state.get(), instance_, nullptr, nullptr, 0, features().data()); }
}

std::string Lv2Instance::state() const {
    if (!lilv_instance_get_extension_data(instance_, LV2_STATE__interface)) { return {}; }
    const State state(lilv_state_new_from_instance(plugin_, instance_, shared_->urids.mapFeature(), nullptr, nullptr,
                                                   nullptr, nullptr, nullptr, nullptr, LV2_STATE_IS_POD, nullptr));
    if (!state) { return {}; }
    char* const text = lilv_state_to_string(shared_->world.raw(), shared_->urids.mapFeature(),
                                            shared_->urids.unmapFeature(), state.get(), stateName, nullptr);
    std::string out = text ? text : "";
    lilv_free(text);
    return out;
}

void Lv2Instance::setControl(size_t index, double value) noexcept {
    if (index < wanted_.size() && std::isfinite(value)) {
        wanted_[index].store(float(value), std::memory_order_relaxed);
    }
}

void Lv2Instance::setFile(const std::string& uri, const std::string& storedPath) {
    const std::string path = pathFromStored(storedPath);
    Lv2Urids& urids = shared_->urids;
    std::vector<uint8_t> bytes(path.size() + 256);
    LV2_Atom_Forge forge;
    LV2_Atom_Forge_Frame frame;
    lv2_atom_forge_init(&forge, urids.mapFeature());
    lv2_atom_forge_set_buffer(&forge, bytes.data(), bytes.size());
    lv2_atom_forge_object(&forge, &frame, 0, urids.map(LV2_PATCH__Set));
    lv2_atom_forge_key(&forge, urids.map(LV2_PATCH__property));
    lv2_atom_forge_urid(&forge, urids.map(uri.c_str()));
    lv2_atom_forge_key(&forge, urids.map(LV2_PATCH__value));
    lv2_atom_forge_path(&forge, path.c_str(), uint32_t(path.size()));
    lv2_atom_forge_pop(&forge, &frame);
    messages_.push(forge.offset, bytes.data());
}

void Lv2Instance::sendMessage(std::span<const uint8_t> message) {
    messages_.push(uint32_t(message.size()), message.data());
}

std::unique_ptr<PluginWindow> Lv2Instance::openWindow(const PluginInfo& info, const PluginWindowPlace& place) {
    return std::make_unique<Lv2Window>(*this, info, place);
}

// Gives the plug-in what has been sent since the last block, as far as there is room.
void Lv2Instance::passMessages() noexcept {
    const auto port = std::ranges::find(atoms_, uint32_t(messagePort_), &Atoms::port);
    if (messagePort_ < 0 || port == atoms_.end()) { return; }
    auto* const sequence = reinterpret_cast<LV2_Atom_Sequence*>(port->bytes.data());
    auto* const event = reinterpret_cast<LV2_Atom_Event*>(event_.data());
    uint32_t bytes = 0;
    while (sequence->atom.size < uint32_t(atomBytes) / 2 && messages_.pop(bytes, &event->body)) {
        event->time.frames = 0;
        lv2_atom_sequence_append_event(sequence, uint32_t(atomBytes), event);
    }
}

void Lv2Instance::resetAtoms() noexcept {
    for (Atoms& each : atoms_) {
        auto* const sequence = reinterpret_cast<LV2_Atom_Sequence*>(each.bytes.data());
        sequence->atom.type = each.isInput ? sequence_ : chunk_;
        sequence->atom.size = each.isInput ? sizeof(LV2_Atom_Sequence_Body) : uint32_t(atomBytes);
        sequence->body = {};
    }
}

void Lv2Instance::process(const float* const* inputs, float* const* outputs, uint32_t frames) noexcept {
    for (size_t i = 0; i < controlPorts_.size(); ++i) {
        numbers_[controlPorts_[i]] = wanted_[i].load(std::memory_order_relaxed);
    }
    size_t in = 0;
    size_t out = 0;
    for (const Port& port : ports_) {
        if (port.kind == Lv2PortKind::audioIn) {
            const float* const plane = inputs[in++];
            // An effect only reads it.
            lilv_instance_connect_port(instance_, port.index, const_cast<float*>(plane ? plane : silence_.data()));
        } else if (port.kind == Lv2PortKind::audioOut) {
            float* const plane = outputs[out++];
            lilv_instance_connect_port(instance_, port.index, plane ? plane : unwanted_.data());
        }
    }
    resetAtoms();
    passMessages();
    lilv_instance_run(instance_, frames);
    worker_.deliver();
    if (reports_.areWanted.load(std::memory_order_relaxed)) { report(); }
    if (latencyPort_ < 0) { return; }
    const float latency = numbers_[size_t(latencyPort_)];
    latency_.store(latency > 0 && latency < 1e7F ? int(std::lround(latency)) : 0, std::memory_order_relaxed);
}

// Tells the window what has come out of the ports that aren't sound.
void Lv2Instance::report() noexcept {
    for (const Port& port : ports_) {
        if (port.kind != Lv2PortKind::controlOut) { continue; }
        reports_.numbers[port.index].store(numbers_[port.index], std::memory_order_relaxed);
    }
    for (const Atoms& each : atoms_) {
        const auto* const sequence = reinterpret_cast<const LV2_Atom_Sequence*>(each.bytes.data());
        if (each.isInput || sequence->atom.type != sequence_ || sequence->atom.size > uint32_t(atomBytes)) { continue; }
        LV2_ATOM_SEQUENCE_FOREACH(sequence, event) {
            const uint64_t bytes = sizeof each.port + sizeof event->body + uint64_t(event->body.size);
            if (bytes > reported_.size()) { continue; }
            std::memcpy(reported_.data(), &each.port, sizeof each.port);
            std::memcpy(reported_.data() + sizeof each.port, &event->body, sizeof event->body + event->body.size);
            reports_.events.push(uint32_t(bytes), reported_.data());
        }
    }
}

namespace {

class Lv2Host : public PluginHost {
public:
    PluginInfo describe(const std::string& uri, const std::string& bundle) override {
        Lv2World& world = shared_->world;
        if (!world.plugin(uri)) { world.loadBundle(bundle); }
        if (!world.plugin(uri)) { world.loadBundle(bundleOf(uri)); }
        const LilvPlugin* const plugin = world.plugin(uri);
        if (!plugin) { throw Error("It isn't installed"); }
        return world.describe(plugin);
    }
    std::unique_ptr<PluginInstance> instantiate(const PluginInfo& info, double sampleRate,
                                                const PluginSettings& settings) override {
        if (!info.refusal.empty()) { throw Error(info.refusal); }
        return std::make_unique<Lv2Instance>(shared_, info, sampleRate, settings);
    }

private:
    // Looks everywhere, in a world of its own: a bundle must not be read twice into one that has instances.
    static std::string bundleOf(const std::string& uri) {
        Lv2World all;
        all.loadAll();
        const LilvPlugin* const plugin = all.plugin(uri);
        return plugin ? all.describe(plugin).bundle : "";
    }
    std::shared_ptr<Lv2Shared> shared_ = std::make_shared<Lv2Shared>();
};

}  // namespace

std::unique_ptr<PluginHost> makePluginHost() {
    return std::make_unique<Lv2Host>();
}

}  // namespace brindlehum
