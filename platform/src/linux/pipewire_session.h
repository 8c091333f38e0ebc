// PipeWireSession: one connection to a server, and the graph that the server announces.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "pipewire_graph.h"
#include "pipewire_loop.h"

namespace brindlehum {

// Called on the library's thread, with its lock held.
class PipeWireListener {
public:
    virtual ~PipeWireListener() = default;
    virtual void graphChanged() noexcept = 0;  // also called when the server has gone
};

// Main thread, except where stated. Once the server has gone, the session stays dead: make a new one then.
class PipeWireSession {
public:
    // Seconds to wait for any answer of the server.
    static constexpr double patience = 0.5;

    enum class Failure : uint8_t { none, refused, silent };
    // Connects and reads the graph. Null when there is no server, or when it doesn't answer.
    static std::shared_ptr<PipeWireSession> connect(std::shared_ptr<PipeWireLoop> loop, Failure& failure);
    ~PipeWireSession();
    PipeWireSession(const PipeWireSession&) = delete;
    PipeWireSession& operator=(const PipeWireSession&) = delete;

    PipeWireLoop& loop() const { return *loop_; }
    pw_core* core() const { return core_; }

    bool isAlive() const;
    // Updates the graph to the server's state; false when the server has gone or doesn't answer.
    bool update();
    // A copy of the graph as known now.
    PipeWireGraph graph() const;

    // --- Lock held, any thread.
    bool isDead() const { return dead_; }
    PipeWireGraph& knownGraph() { return graph_; }
    void addListener(PipeWireListener& listener) { listeners_.push_back(&listener); }
    void removeListener(PipeWireListener& listener) { std::erase(listeners_, &listener); }
    // Waits until the server has answered all earlier requests. Not from the library's thread.
    bool roundTrip();

private:
    struct Metadata;
    explicit PipeWireSession(std::shared_ptr<PipeWireLoop> loop);
    void watch();
    void changed();
    void addGlobal(uint32_t id, const char* type, const spa_dict& properties);
    void addMetadata(uint32_t id, const char* name);

    const std::shared_ptr<PipeWireLoop> loop_;
    pw_core* core_ = nullptr;
    pw_registry* registry_ = nullptr;
    spa_hook coreHook_{};
    spa_hook registryHook_{};
    std::vector<std::unique_ptr<Metadata>> metadata_;
    PipeWireGraph graph_;
    std::vector<PipeWireListener*> listeners_;
    int lastDone_ = -1;  // sequence number of the server's last answer
    bool dead_ = false;
};

}  // namespace brindlehum
