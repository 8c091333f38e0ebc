// Reads what plug-ins say of themselves, and decides which of them can be inserts.
#include "lv2_world.h"

#include <lv2/atom/atom.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/core/lv2.h>
#include <lv2/log/log.h>
#include <lv2/options/options.h>
#include <lv2/parameters/parameters.h>
#include <lv2/patch/patch.h>
#include <lv2/port-props/port-props.h>
#include <lv2/state/state.h>
#include <lv2/ui/ui.h>
#include <lv2/units/units.h>
#include <lv2/urid/urid.h>
#include <lv2/worker/worker.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <map>
#include <string_view>

namespace brindlehum {
namespace {

constexpr std::array offeredFeatures = {LV2_URID__map,
                                        LV2_URID__unmap,
                                        LV2_OPTIONS__options,
                                        LV2_WORKER__schedule,
                                        LV2_LOG__log,
                                        LV2_CORE__inPlaceBroken,
                                        LV2_CORE__hardRTCapable,
                                        LV2_CORE__isLive,
                                        LV2_STATE__mapPath,
                                        LV2_STATE__freePath,
                                        LV2_BUF_SIZE__boundedBlockLength,
                                        LV2_STATE__loadDefaultState,
                                        LV2_STATE__threadSafeRestore};
constexpr std::array offeredOptions = {LV2_BUF_SIZE__minBlockLength, LV2_BUF_SIZE__maxBlockLength,
                                       LV2_BUF_SIZE__nominalBlockLength, LV2_BUF_SIZE__sequenceSize,
                                       LV2_PARAMETERS__sampleRate};

std::string textOf(const LilvNode* node) {
    const char* const text = node ? lilv_node_as_string(node) : nullptr;
    return text ? text : "";
}

std::string textOf(LilvNode* node, bool owned) {
    const Lv2Node keeper(owned ? node : nullptr);
    return textOf(node);
}

// The first of `nodes` that isn't offered; empty when all are.
template <size_t n>
std::string missing(const LilvNodes* nodes, const std::array<const char*, n>& offered) {
    LILV_FOREACH(nodes, each, nodes) {
        const std::string name = textOf(lilv_nodes_get(nodes, each));
        if (std::ranges::find(offered, std::string_view(name)) == offered.end()) { return name; }
    }
    return {};
}

// The symbol of a unit, where the file that defines the units hasn't been read.
std::string usualSymbol(const std::string& unit) {
    static const std::map<std::string, std::string> symbols = {
        {LV2_UNITS__db, "dB"},   {LV2_UNITS__hz, "Hz"}, {LV2_UNITS__khz, "kHz"}, {LV2_UNITS__ms, "ms"},
        {LV2_UNITS__s, "s"},     {LV2_UNITS__pc, "%"},  {LV2_UNITS__bpm, "BPM"}, {LV2_UNITS__degree, "deg"},
        {LV2_UNITS__cent, "ct"}, {LV2_UNITS__m, "m"},   {LV2_UNITS__cm, "cm"},   {LV2_UNITS__semitone12TET, "semi"}};
    const auto known = symbols.find(unit);
    return known == symbols.end() ? "" : known->second;
}

double numberOf(LilvNode* node, double otherwise) {
    const Lv2Node keeper(node);
    if (!node || !(lilv_node_is_float(node) || lilv_node_is_int(node))) { return otherwise; }
    const double value = lilv_node_as_float(node);
    return std::isfinite(value) ? value : otherwise;
}

}  // namespace

std::vector<std::string> lv2Folders() {
    std::vector<std::string> folders;
    const char* const home = std::getenv("HOME");
    const char* const chosen = std::getenv("LV2_PATH");
    if (!chosen || !*chosen) {
        return {std::string(home ? home : "") + "/.lv2",
                "/usr/local/lib/lv2",
                "/usr/lib/lv2",
                "/usr/lib64/lv2",
                "/usr/lib/x86_64-linux-gnu/lv2",
                "/usr/lib/aarch64-linux-gnu/lv2"};
    }
    const std::string_view path = chosen;
    for (size_t from = 0; from <= path.size();) {
        const size_t to = std::min(path.find(':', from), path.size());
        if (to > from) { folders.emplace_back(path.substr(from, to - from)); }
        from = to + 1;
    }
    return folders;
}

Lv2World::Lv2World() : world_(lilv_world_new()) {
    std::string path;
    for (const std::string& folder : lv2Folders()) { path += (path.empty() ? "" : ":") + folder; }
    const Lv2Node option(lilv_new_string(world_, path.c_str()));
    lilv_world_set_option(world_, LILV_OPTION_LV2_PATH, option.get());
}

Lv2World::~Lv2World() {
    lilv_world_free(world_);
}

void Lv2World::loadAll() {
    lilv_world_load_all(world_);
}

void Lv2World::loadBundle(const std::string& bundle) {
    if (bundle.starts_with("file://")) { lilv_world_load_bundle(world_, uri(bundle.c_str()).get()); }
}

const LilvPlugin* Lv2World::plugin(const std::string& name) const {
    const Lv2Node node = uri(name.c_str());
    return node ? lilv_plugins_get_by_uri(lilv_world_get_all_plugins(world_), node.get()) : nullptr;
}

bool Lv2World::has(const LilvPlugin* plugin, const LilvPort* port, const char* property) const {
    return lilv_port_has_property(plugin, port, uri(property).get());
}

Lv2PortKind Lv2World::kindOf(const LilvPlugin* plugin, const LilvPort* port) const {
    const auto is = [&](const char* type) { return lilv_port_is_a(plugin, port, uri(type).get()); };
    const bool in = is(LV2_CORE__InputPort);
    if (is(LV2_CORE__AudioPort)) {
        const bool side =
            in && (has(plugin, port, LV2_CORE_PREFIX "isSideChain") || has(plugin, port, LV2_CORE__connectionOptional));
        return side ? Lv2PortKind::sideChainIn : in ? Lv2PortKind::audioIn : Lv2PortKind::audioOut;
    }
    if (is(LV2_CORE__ControlPort)) { return in ? Lv2PortKind::controlIn : Lv2PortKind::controlOut; }
    if (is(LV2_CORE__CVPort)) { return in ? Lv2PortKind::cvIn : Lv2PortKind::cvOut; }
    if (is(LV2_ATOM__AtomPort)) { return in ? Lv2PortKind::atomIn : Lv2PortKind::atomOut; }
    return Lv2PortKind::none;
}

bool Lv2World::isUsersControl(const LilvPlugin* plugin, const LilvPort* port) const {
    if (kindOf(plugin, port) != Lv2PortKind::controlIn) { return false; }
    const Lv2Node role(lilv_port_get(plugin, port, uri(LV2_CORE__designation).get()));
    const std::string name = textOf(role.get());
    return name != LV2_CORE__enabled && name != LV2_CORE__freeWheeling;
}

std::string Lv2World::unitOf(const LilvPlugin* plugin, const LilvPort* port) const {
    const Lv2Node unit(lilv_port_get(plugin, port, uri(LV2_UNITS__unit).get()));
    if (!unit) { return {}; }
    const Lv2Node symbol(lilv_world_get(world_, unit.get(), uri(LV2_UNITS__symbol).get(), nullptr));
    return symbol ? textOf(symbol.get()) : usualSymbol(textOf(unit.get()));
}

double Lv2World::restOf(const LilvPlugin* plugin, const LilvPort* port) const {
    LilvNode* rest = nullptr;
    lilv_port_get_range(plugin, port, &rest, nullptr, nullptr);
    return numberOf(rest, 0);
}

PluginControl Lv2World::control(const LilvPlugin* plugin, const LilvPort* port) const {
    PluginControl out;
    out.symbol = textOf(lilv_port_get_symbol(plugin, port));
    out.name = textOf(lilv_port_get_name(plugin, port), true);
    LilvNode *rest = nullptr, *low = nullptr, *high = nullptr;
    lilv_port_get_range(plugin, port, &rest, &low, &high);
    out.low = numberOf(low, 0);
    out.high = std::max(numberOf(high, std::max(out.low + 1, 1.0)), out.low);
    out.rest = std::clamp(numberOf(rest, out.low), out.low, out.high);
    out.isSwitch = has(plugin, port, LV2_CORE__toggled);
    out.isWhole = has(plugin, port, LV2_CORE__integer);
    out.isHidden = has(plugin, port, LV2_PORT_PROPS__notOnGUI);
    out.isLogarithmic = has(plugin, port, LV2_PORT_PROPS__logarithmic) && out.low > 0;
    out.unit = unitOf(plugin, port);
    if (!has(plugin, port, LV2_CORE__enumeration)) { return out; }
    LilvScalePoints* const points = lilv_port_get_scale_points(plugin, port);
    LILV_FOREACH(scale_points, each, points) {
        const LilvScalePoint* const point = lilv_scale_points_get(points, each);
        const LilvNode* const value = lilv_scale_point_get_value(point);
        out.choices.emplace_back(textOf(lilv_scale_point_get_label(point)), double(lilv_node_as_float(value)));
    }
    if (points) { lilv_scale_points_free(points); }
    std::ranges::sort(out.choices, {}, &std::pair<std::string, double>::second);
    return out;
}

// Its parameters that are paths.
std::vector<PluginFile> Lv2World::files(const LilvPlugin* plugin) const {
    std::vector<PluginFile> out;
    LilvNodes* const writable = lilv_plugin_get_value(plugin, uri(LV2_PATCH__writable).get());
    LILV_FOREACH(nodes, each, writable) {
        const LilvNode* const parameter = lilv_nodes_get(writable, each);
        const auto said = [&](const char* what) {
            const Lv2Node node(lilv_world_get(world_, parameter, uri(what).get(), nullptr));
            return textOf(node.get());
        };
        if (said(LILV_NS_RDFS "range") == LV2_ATOM__Path) {
            out.push_back({textOf(parameter), said(LILV_NS_RDFS "label")});
        }
    }
    lilv_nodes_free(writable);
    std::ranges::sort(out, {}, &PluginFile::name);
    return out;
}

Lv2Node Lv2World::x11Window(const LilvPlugin* plugin) const {
    LilvUIs* const windows = lilv_plugin_get_uis(plugin);
    const Lv2Node kind = uri(LV2_UI__X11UI);
    Lv2Node found;
    LILV_FOREACH(uis, each, windows) {
        const LilvUI* const window = lilv_uis_get(windows, each);
        if (!found && lilv_ui_is_a(window, kind.get())) { found.reset(lilv_node_duplicate(lilv_ui_get_uri(window))); }
    }
    lilv_uis_free(windows);
    return found;
}

std::string Lv2World::refusalOf(const LilvPlugin* plugin, const PluginInfo& info) const {
    const auto lacks = [](const std::string& what) { return "It needs " + what + ", which Brindlehum doesn't offer"; };
    LilvNodes* const required = lilv_plugin_get_required_features(plugin);
    const std::string feature = missing(required, offeredFeatures);
    lilv_nodes_free(required);
    if (!feature.empty()) { return lacks(feature); }
    LilvNodes* const options = lilv_plugin_get_value(plugin, uri(LV2_OPTIONS__requiredOption).get());
    const std::string option = missing(options, offeredOptions);
    lilv_nodes_free(options);
    if (!option.empty()) { return lacks(option); }
    if (info.inputs != info.outputs) {
        return "It makes " + std::to_string(info.outputs) + " channels of " + std::to_string(info.inputs) +
               "; an insert has as many outputs as inputs";
    }
    for (uint32_t i = 0; i < lilv_plugin_get_num_ports(plugin); ++i) {
        const LilvPort* const port = lilv_plugin_get_port_by_index(plugin, i);
        if (kindOf(plugin, port) == Lv2PortKind::none && !has(plugin, port, LV2_CORE__connectionOptional)) {
            return "It has a port of a kind that Brindlehum doesn't know";
        }
    }
    return {};
}

PluginInfo Lv2World::describe(const LilvPlugin* plugin) const {
    PluginInfo info;
    info.uri = textOf(lilv_plugin_get_uri(plugin));
    info.name = textOf(lilv_plugin_get_name(plugin), true);
    info.maker = textOf(lilv_plugin_get_author_name(plugin), true);
    info.bundle = textOf(lilv_plugin_get_bundle_uri(plugin));
    for (uint32_t i = 0; i < lilv_plugin_get_num_ports(plugin); ++i) {
        const LilvPort* const port = lilv_plugin_get_port_by_index(plugin, i);
        const Lv2PortKind kind = kindOf(plugin, port);
        info.inputs += kind == Lv2PortKind::audioIn ? 1 : 0;
        info.outputs += kind == Lv2PortKind::audioOut ? 1 : 0;
        if (isUsersControl(plugin, port)) { info.controls.push_back(control(plugin, port)); }
    }
    info.files = files(plugin);
    info.hasWindow = x11Window(plugin) != nullptr;
    info.refusal = refusalOf(plugin, info);
    return info;
}

}  // namespace brindlehum
