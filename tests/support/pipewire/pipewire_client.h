// PipeWireClient: a plain view of a server's globals for tests, written apart from the product's own.
#pragma once

#include <pipewire/pipewire.h>

#include <functional>
#include <map>
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

    PipeWireClient();
    ~PipeWireClient();
    PipeWireClient(const PipeWireClient&) = delete;
    PipeWireClient& operator=(const PipeWireClient&) = delete;

    void lock() { pw_thread_loop_lock(loop_); }
    void unlock() { pw_thread_loop_unlock(loop_); }
    pw_core* core() { return core_; }
    pw_registry* registry() { return registry_; }

    // --- Lock held once.
    // Until the condition holds; looked at after each event.
    void waitFor(const std::string& what, const std::function<bool()>& condition);
    void sync();
    // Until the node is there.
    uint32_t waitForNode(const std::string& name);
    std::vector<uint32_t> find(const std::string& type, const std::string& key, const std::string& value) const;
    // Port ids in the order of their numbers.
    std::vector<uint32_t> ports(uint32_t node, const std::string& direction) const;

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
