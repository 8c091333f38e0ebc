// Lv2World: the descriptions of installed LV2 plug-ins, and the words in which they are written.
#pragma once

#include <lilv/lilv.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/plugin_host.h"

namespace brindlehum {

struct LilvNodeDeleter {
    void operator()(LilvNode* node) const { lilv_node_free(node); }
};
using Lv2Node = std::unique_ptr<LilvNode, LilvNodeDeleter>;

// What a port is to us.
enum class Lv2PortKind : uint8_t {
    audioIn,
    sideChainIn,
    audioOut,
    controlIn,
    controlOut,
    cvIn,
    cvOut,
    atomIn,
    atomOut,
    none
};

// Where plug-ins are looked for, in order.
std::vector<std::string> lv2Folders();

// One thread at a time.
class Lv2World {
public:
    Lv2World();
    ~Lv2World();
    Lv2World(const Lv2World&) = delete;
    Lv2World& operator=(const Lv2World&) = delete;

    LilvWorld* raw() const { return world_; }
    void loadAll();
    void loadBundle(const std::string& uri);
    // Null when it isn't known by what has been loaded.
    const LilvPlugin* plugin(const std::string& uri) const;
    Lv2Node uri(const char* text) const { return Lv2Node(lilv_new_uri(world_, text)); }

    PluginInfo describe(const LilvPlugin* plugin) const;
    Lv2PortKind kindOf(const LilvPlugin* plugin, const LilvPort* port) const;
    // Whether its number is for the user to set, and not for the host.
    bool isUsersControl(const LilvPlugin* plugin, const LilvPort* port) const;
    // The first of its windows that we can show; null when it has none.
    Lv2Node x11Window(const LilvPlugin* plugin) const;
    double restOf(const LilvPlugin* plugin, const LilvPort* port) const;

private:
    std::vector<PluginFile> files(const LilvPlugin* plugin) const;
    PluginControl control(const LilvPlugin* plugin, const LilvPort* port) const;
    std::string unitOf(const LilvPlugin* plugin, const LilvPort* port) const;
    std::string refusalOf(const LilvPlugin* plugin, const PluginInfo& info) const;
    bool has(const LilvPlugin* plugin, const LilvPort* port, const char* property) const;

    LilvWorld* world_;
};

}  // namespace brindlehum
