// PipeWireClient: a plain view of a server's globals for tests, written apart from the product's own.
#pragma once

#include <pipewire/pipewire.h>

#include <functional>
#include <map>
#include <mutex>
#include <stdexcept>
#include <string>
#include <vector>

namespace brindlehum::test {

// Its thread runs from the construction on. Calls from outside hold the lock and throw std::runtime_error on failure.
class PipeWireClient {
public:
    struct Global {
        std::string type;
        std::map<std::string, std::string> properties;
        std::string get(const std::string& key) const { return properties.contains(key) ? properties.at(key) : ""; }
    };

    PipeWireClient() {
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
        registryEvents.global = [](void* data, uint32_t id, uint32_t, const char* type, uint32_t,
                                   const spa_dict* dict) {
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
    ~PipeWireClient() {
        pw_thread_loop_stop(loop_);
        spa_hook_remove(&registryHook_);
        pw_proxy_destroy(reinterpret_cast<pw_proxy*>(registry_));
        spa_hook_remove(&coreHook_);
        pw_core_disconnect(core_);
        pw_context_destroy(context_);
        pw_thread_loop_destroy(loop_);
    }
    PipeWireClient(const PipeWireClient&) = delete;
    PipeWireClient& operator=(const PipeWireClient&) = delete;

    void lock() { pw_thread_loop_lock(loop_); }
    void unlock() { pw_thread_loop_unlock(loop_); }
    pw_core* core() { return core_; }
    pw_registry* registry() { return registry_; }

    // --- Lock held once.
    // Until the condition holds; looked at after each event.
    void waitFor(const std::string& what, const std::function<bool()>& condition) {
        timespec limit{};
        pw_thread_loop_get_time(loop_, &limit, 20 * SPA_NSEC_PER_SEC);
        while (!condition()) {
            if (pw_thread_loop_timed_wait_full(loop_, &limit) < 0) {
                throw std::runtime_error("PipeWire: waited in vain for " + what);
            }
        }
    }
    void sync() {
        const int sequence = pw_core_sync(core_, PW_ID_CORE, 0);
        waitFor("an answer", [&] { return done_ - sequence >= 0; });
    }
    // Until the node is there.
    uint32_t waitForNode(const std::string& name) {
        std::vector<uint32_t> found;
        waitFor(name, [&] { return !(found = find(PW_TYPE_INTERFACE_Node, PW_KEY_NODE_NAME, name)).empty(); });
        return found.front();
    }
    std::vector<uint32_t> find(const std::string& type, const std::string& key, const std::string& value) const {
        std::vector<uint32_t> found;
        for (const auto& [id, global] : globals_) {
            if (global.type == type && global.get(key) == value) { found.push_back(id); }
        }
        return found;
    }
    // Port ids in the order of their numbers.
    std::vector<uint32_t> ports(uint32_t node, const std::string& direction) const {
        std::map<int, uint32_t> ordered;
        for (const uint32_t id : find(PW_TYPE_INTERFACE_Port, PW_KEY_NODE_ID, std::to_string(node))) {
            const Global& port = globals_.at(id);
            if (port.get(PW_KEY_PORT_DIRECTION) == direction) { ordered[std::stoi(port.get(PW_KEY_PORT_ID))] = id; }
        }
        std::vector<uint32_t> ids;
        for (const auto& [number, id] : ordered) { ids.push_back(id); }
        return ids;
    }

private:
    pw_thread_loop* loop_;
    pw_context* context_;
    pw_core* core_ = nullptr;
    pw_registry* registry_ = nullptr;
    spa_hook coreHook_{};
    spa_hook registryHook_{};
    std::map<uint32_t, Global> globals_;
    int done_ = -1;
};

}  // namespace brindlehum::test
