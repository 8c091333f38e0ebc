// Loads a plug-in's window, and passes on what plug-in and window say to each other.
#include "lv2_window.h"

#include <X11/Xlib.h>
#include <dlfcn.h>
#include <lv2/atom/atom.h>
#include <lv2/atom/util.h>
#include <lv2/data-access/data-access.h>
#include <lv2/instance-access/instance-access.h>
#include <lv2/parameters/parameters.h>
#include <lv2/patch/patch.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <string_view>

#include "base/error.h"
#include "base/stored_path.h"
#include "linux/x11/x11_display.h"

namespace brindlehum {
namespace {

constexpr std::array offeredToWindows = {LV2_UI__parent,      LV2_UI__resize,        LV2_UI__portMap,
                                         LV2_UI__touch,       LV2_UI__idleInterface, LV2_URID__map,
                                         LV2_URID__unmap,     LV2_OPTIONS__options,  LV2_INSTANCE_ACCESS_URI,
                                         LV2_DATA_ACCESS_URI, LV2_UI__noUserResize,  LV2_UI__fixedSize};

constexpr float notYet = std::numeric_limits<float>::quiet_NaN();  // differs from every number

// Xlib ends the process at an error that nobody handles, such as a request for a window that we have closed meanwhile.
int ignore(::Display* /*display*/, ::XErrorEvent* /*error*/) {
    return 0;
}

std::string pathOf(const LilvNode* uri) {
    char* const path = uri ? lilv_file_uri_parse(lilv_node_as_uri(uri), nullptr) : nullptr;
    std::string out = path ? path : "";
    lilv_free(path);
    return out;
}

}  // namespace

Lv2Window::Lv2Window(Lv2Instance& instance, const PluginInfo& info, PluginWindowPlace place)
    : instance_(instance), info_(info), place_(std::move(place)), onTheirWay_(info.controls.size()), display_(nullptr) {
    descriptor_ = load();
    ::XSetErrorHandler(ignore);
    display_ = xcb_connect(nullptr, nullptr);
    eventTransfer_ = instance.shared().urids.map(LV2_ATOM__eventTransfer);
    makeFeatures();
    handle_ = descriptor_->instantiate(
        descriptor_, info.uri.c_str(), folder_.c_str(),
        [](LV2UI_Controller self, uint32_t port, uint32_t bytes, uint32_t format, const void* data) {
            static_cast<Lv2Window*>(self)->write(port, bytes, format, data);
        },
        this, &widget_, features_.data());
    if (!handle_) {
        xcb_disconnect(display_);
        throw Error("Its window doesn't open");
    }
    if (descriptor_->extension_data) {
        idle_ = static_cast<const LV2UI_Idle_Interface*>(descriptor_->extension_data(LV2_UI__idleInterface));
    }
    const Lv2World& world = instance.shared().world;
    for (uint32_t i = 0; i < lilv_plugin_get_num_ports(instance.plugin()); ++i) {
        const LilvPort* const port = lilv_plugin_get_port_by_index(instance.plugin(), i);
        if (world.kindOf(instance.plugin(), port) == Lv2PortKind::controlOut) { told_.emplace(i, notYet); }
    }
    const LilvPort* const enabled = lilv_plugin_get_port_by_designation(
        instance.plugin(), world.uri(LV2_CORE__InputPort).get(), world.uri(LV2_CORE__enabled).get());
    if (enabled) { enabledPort_ = int(lilv_port_get_index(instance.plugin(), enabled)); }
    for (size_t i = 0; i < instance.controlPorts().size(); ++i) {
        tell(instance.controlPorts()[i], instance.wanted(i));
    }
    instance.reports().areWanted = true;
    measure();
}

Lv2Window::~Lv2Window() {
    instance_.reports().areWanted = false;
    descriptor_->cleanup(handle_);
    xcb_disconnect(display_);
}

// Its code stays loaded: some can't be unloaded without a crash.
const LV2UI_Descriptor* Lv2Window::load() {
    const Lv2World& world = instance_.shared().world;
    const Lv2Node name = world.x11Window(instance_.plugin());
    if (!name) { throw Error("It has no window of its own"); }
    lilv_world_load_resource(world.raw(), name.get());
    LilvNodes* const required =
        lilv_world_find_nodes(world.raw(), name.get(), world.uri(LV2_CORE__requiredFeature).get(), nullptr);
    std::string lacking;
    LILV_FOREACH(nodes, each, required) {
        const std::string feature = lilv_node_as_string(lilv_nodes_get(required, each));
        if (std::ranges::find(offeredToWindows, std::string_view(feature)) == offeredToWindows.end()) {
            lacking = feature;
        }
    }
    lilv_nodes_free(required);
    if (!lacking.empty()) { throw Error("Its window needs " + lacking + ", which Brindlehum doesn't offer"); }

    LilvUIs* const windows = lilv_plugin_get_uis(instance_.plugin());
    const LilvUI* const window = lilv_uis_get_by_uri(windows, name.get());
    const std::string binary = window ? pathOf(lilv_ui_get_binary_uri(window)) : "";
    folder_ = window ? pathOf(lilv_ui_get_bundle_uri(window)) : "";
    uri_ = lilv_node_as_uri(name.get());
    lilv_uis_free(windows);
    void* const code = ::dlopen(binary.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!code) { throw Error("Its window can't be loaded"); }
    const auto describe = reinterpret_cast<LV2UI_DescriptorFunction>(::dlsym(code, "lv2ui_descriptor"));
    for (uint32_t i = 0; describe; ++i) {
        const LV2UI_Descriptor* const each = describe(i);
        if (!each) { break; }
        if (uri_ == each->URI) { return each; }
    }
    throw Error("Its window can't be loaded");
}

void Lv2Window::makeFeatures() {
    Lv2Urids& urids = instance_.shared().urids;
    resize_ = {this, [](LV2UI_Feature_Handle self, int width, int height) {
                   static_cast<Lv2Window*>(self)->size_ = {width, height};
                   return 0;
               }};
    portMap_ = {this, [](LV2UI_Feature_Handle self, const char* symbol) {
                    const LilvPlugin* const plugin = static_cast<Lv2Window*>(self)->instance_.plugin();
                    for (uint32_t i = 0; i < lilv_plugin_get_num_ports(plugin); ++i) {
                        const LilvPort* const port = lilv_plugin_get_port_by_index(plugin, i);
                        if (std::string_view(lilv_node_as_string(lilv_port_get_symbol(plugin, port))) == symbol) {
                            return i;
                        }
                    }
                    return LV2UI_INVALID_PORT_INDEX;
                }};
    touch_ = {this, [](LV2UI_Feature_Handle, uint32_t, bool) {}};
    data_.data_access = lilv_instance_get_descriptor(instance_.raw())->extension_data;
    scale_ = float(place_.scale);
    rate_ = instance_.sampleRate();
    const auto number = [&](const char* key, const float& value) {
        options_.push_back({LV2_OPTIONS_INSTANCE, 0, urids.map(key), sizeof value, urids.map(LV2_ATOM__Float), &value});
    };
    number(LV2_PARAMETERS__sampleRate, rate_);
    number(LV2_UI__scaleFactor, scale_);
    number(LV2_UI__updateRate, updates_);
    options_.push_back({LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr});
    offered_ = {{LV2_UI__parent, reinterpret_cast<void*>(uintptr_t(place_.parent))},
                {LV2_UI__resize, &resize_},
                {LV2_UI__portMap, &portMap_},
                {LV2_UI__touch, &touch_},
                {LV2_UI__idleInterface, nullptr},
                {LV2_URID__map, urids.mapFeature()},
                {LV2_URID__unmap, urids.unmapFeature()},
                {LV2_OPTIONS__options, options_.data()},
                {LV2_INSTANCE_ACCESS_URI, lilv_instance_get_handle(instance_.raw())},
                {LV2_DATA_ACCESS_URI, &data_}};
    for (const LV2_Feature& each : offered_) { features_.push_back(&each); }
    features_.push_back(nullptr);
}

// Its user has done something.
void Lv2Window::write(uint32_t port, uint32_t bytes, uint32_t format, const void* data) {
    const auto& ports = instance_.controlPorts();
    if (format == 0 && bytes == sizeof(float)) {
        float value = 0;
        std::memcpy(&value, data, sizeof value);
        const auto control = std::ranges::find(ports, port);
        if (int(port) == enabledPort_) { return place_.onBypass(value <= 0); }
        if (control == ports.end() || !std::isfinite(value)) { return; }
        const auto index = size_t(control - ports.begin());
        ++onTheirWay_[index];
        place_.onSet(index, value);
    } else if (format == eventTransfer_ && bytes >= sizeof(LV2_Atom) && int(port) == instance_.messagePort()) {
        const auto& atom = *static_cast<const LV2_Atom*>(data);
        if (atom.size <= bytes - sizeof atom) { writeMessage(atom); }
    }
}

// A file is told apart, so that it is remembered as one.
void Lv2Window::writeMessage(const LV2_Atom& atom) {
    Lv2Urids& urids = instance_.shared().urids;
    const auto* const object = reinterpret_cast<const LV2_Atom_Object*>(&atom);
    if (atom.type == urids.map(LV2_ATOM__Object) && atom.size >= sizeof(LV2_Atom_Object_Body) &&
        object->body.otype == urids.map(LV2_PATCH__Set)) {
        const LV2_Atom* property = nullptr;
        const LV2_Atom* value = nullptr;
        lv2_atom_object_get(object, urids.map(LV2_PATCH__property), &property, urids.map(LV2_PATCH__value), &value, 0);
        if (property && property->type == urids.map(LV2_ATOM__URID) && value &&
            value->type == urids.map(LV2_ATOM__Path) && value->size > 0) {
            const char* const name = urids.unmap(reinterpret_cast<const LV2_Atom_URID*>(property)->body);
            const auto known = std::ranges::find(info_.files, std::string_view(name ? name : ""), &PluginFile::uri);
            const auto* const letters = reinterpret_cast<const char*>(value + 1);
            const std::string path(letters, ::strnlen(letters, value->size));
            if (known != info_.files.end()) { return place_.onFile(known->uri, storedPath(path)); }
        }
    }
    place_.onMessage({reinterpret_cast<const uint8_t*>(&atom), sizeof atom + atom.size});
}

void Lv2Window::show(size_t control, double value) {
    if (control >= onTheirWay_.size()) { return; }
    if (onTheirWay_[control] > 0) {
        --onTheirWay_[control];
        return;
    }
    tell(instance_.controlPorts()[control], float(value));
}

void Lv2Window::showBypassed(bool on) {
    if (enabledPort_ >= 0) { tell(uint32_t(enabledPort_), on ? 0.0F : 1.0F); }
}

void Lv2Window::tell(uint32_t port, float value) {
    if (descriptor_->port_event) { descriptor_->port_event(handle_, port, sizeof value, 0, &value); }
}

void Lv2Window::tellReports() {
    Lv2Reports& reports = instance_.reports();
    for (auto& [port, told] : told_) {
        const float value = reports.numbers[port].load(std::memory_order_relaxed);
        if (value != std::exchange(told, value)) { tell(port, value); }
    }
    uint32_t bytes = 0;
    while (reports.events.pop(bytes, event_.data())) {
        uint32_t port = 0;
        std::memcpy(&port, event_.data(), sizeof port);
        // An atom lies at a multiple of eight bytes.
        std::memmove(event_.data(), event_.data() + sizeof port, bytes - sizeof port);
        if (descriptor_->port_event) {
            descriptor_->port_event(handle_, port, bytes - uint32_t(sizeof port), eventTransfer_, event_.data());
        }
    }
}

void Lv2Window::idle() {
    tellReports();
    if (idle_) { idle_->idle(handle_); }
    measure();
}

// A window that doesn't ask for a size has one nevertheless.
void Lv2Window::measure() {
    const auto window = xcb_window_t(reinterpret_cast<uintptr_t>(widget_));
    if (window == 0 || xcb_connection_has_error(display_) != 0) { return; }
    const XReply<xcb_get_geometry_reply_t> reply(
        xcb_get_geometry_reply(display_, xcb_get_geometry(display_, window), nullptr));
    if (reply) { size_ = {reply->width, reply->height}; }
}

}  // namespace brindlehum
