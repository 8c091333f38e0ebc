// The connection of PipeWireClient.
#include "support/pipewire/pipewire_client.h"

#include <mutex>
#include <stdexcept>

namespace brindlehum::test {

namespace {
constexpr int64_t patience = 20 * SPA_NSEC_PER_SEC;
}

PipeWireClient::PipeWireClient() {
    pw_init(nullptr, nullptr);
    loop_ = pw_thread_loop_new("test-client", nullptr);
    context_ = pw_context_new(pw_thread_loop_get_loop(loop_),
                              pw_properties_new(PW_KEY_CONFIG_NAME, "client-rt.conf", nullptr), 0);
    core_ = pw_context_connect(context_, nullptr, 0);
    if (!core_) { throw std::runtime_error("no PipeWire server to connect to"); }
    static pw_core_events coreEvents{};
    coreEvents.version = PW_VERSION_CORE_EVENTS;
    coreEvents.done = [](void* data, uint32_t, int sequence) {
        auto& client = *static_cast<PipeWireClient*>(data);
        client.done_ = sequence;
        pw_thread_loop_signal(client.loop_, false);
    };
    static pw_registry_events registryEvents{};
    registryEvents.version = PW_VERSION_REGISTRY_EVENTS;
    registryEvents.global = [](void* data, uint32_t id, uint32_t, const char* type, uint32_t, const spa_dict* dict) {
        auto& client = *static_cast<PipeWireClient*>(data);
        Global global{type, {}};
        for (uint32_t i = 0; dict && i < dict->n_items; ++i) {
            global.properties[dict->items[i].key] = dict->items[i].value;
        }
        client.globals_[id] = std::move(global);
        pw_thread_loop_signal(client.loop_, false);
    };
    registryEvents.global_remove = [](void* data, uint32_t id) {
        auto& client = *static_cast<PipeWireClient*>(data);
        client.globals_.erase(id);
        pw_thread_loop_signal(client.loop_, false);
    };
    pw_core_add_listener(core_, &coreHook_, &coreEvents, this);
    registry_ = pw_core_get_registry(core_, PW_VERSION_REGISTRY, 0);
    pw_registry_add_listener(registry_, &registryHook_, &registryEvents, this);
    pw_thread_loop_start(loop_);
    const std::lock_guard guard(*this);
    sync();
}

PipeWireClient::~PipeWireClient() {
    pw_thread_loop_stop(loop_);
    spa_hook_remove(&registryHook_);
    pw_proxy_destroy(reinterpret_cast<pw_proxy*>(registry_));
    spa_hook_remove(&coreHook_);
    pw_core_disconnect(core_);
    pw_context_destroy(context_);
    pw_thread_loop_destroy(loop_);
}

void PipeWireClient::waitFor(const std::string& what, const std::function<bool()>& condition) {
    timespec limit{};
    pw_thread_loop_get_time(loop_, &limit, patience);
    while (!condition()) {
        if (pw_thread_loop_timed_wait_full(loop_, &limit) < 0) {
            throw std::runtime_error("PipeWire: waited in vain for " + what);
        }
    }
}

void PipeWireClient::sync() {
    const int sequence = pw_core_sync(core_, PW_ID_CORE, 0);
    waitFor("an answer", [&] { return done_ - sequence >= 0; });
}

uint32_t PipeWireClient::waitForNode(const std::string& name) {
    std::vector<uint32_t> found;
    waitFor(name, [&] { return !(found = find(PW_TYPE_INTERFACE_Node, PW_KEY_NODE_NAME, name)).empty(); });
    return found.front();
}

std::vector<uint32_t> PipeWireClient::find(const std::string& type, const std::string& key,
                                           const std::string& value) const {
    std::vector<uint32_t> found;
    for (const auto& [id, global] : globals_) {
        if (global.type == type && global.get(key) == value) { found.push_back(id); }
    }
    return found;
}

std::vector<uint32_t> PipeWireClient::ports(uint32_t node, const std::string& direction) const {
    std::map<int, uint32_t> ordered;
    for (const uint32_t id : find(PW_TYPE_INTERFACE_Port, PW_KEY_NODE_ID, std::to_string(node))) {
        const Global& port = globals_.at(id);
        if (port.get(PW_KEY_PORT_DIRECTION) == direction) { ordered[std::stoi(port.get(PW_KEY_PORT_ID))] = id; }
    }
    std::vector<uint32_t> ids;
    for (const auto& [number, id] : ordered) { ids.push_back(id); }
    return ids;
}

}  // namespace brindlehum::test
