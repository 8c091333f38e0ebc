// PipeWireSession: one connection to a server, and the graph that the server announces.
#pragma once

#include <atomic>
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
    virtual void graphChanged() noexcept = 0;  // also called when the server's state has changed
};

// Main thread, except where stated. Once the server has gone, the session stays dead: make a new one then.
class PipeWireSession {
public:
    // Seconds after which a server that hasn't answered counts as silent.
    static constexpr double patience = 2;
    // Seconds that waitForAnswer waits.
    static constexpr double firstPatience = 0.5;

    // Connects without waiting; null when there is no server. `now` is in seconds, as in beat().
    static std::shared_ptr<PipeWireSession> connect(std::shared_ptr<PipeWireLoop> loop, double now);
    ~PipeWireSession();
    PipeWireSession(const PipeWireSession&) = delete;
    PipeWireSession& operator=(const PipeWireSession&) = delete;

    PipeWireLoop& loop() const { return *loop_; }
    pw_core* core() const { return core_; }

    // Waits until the graph is known, the server has gone, or `firstPatience` is over.
    void waitForAnswer();
    // Asks the server for a sign of life, or notes that the last question has waited for too long. Call it regularly
    // while the server is needed.
    void beat(double now);
    // Whether a question waits for its answer.
    bool waits() const;
    // Absent until the graph is known.
    SoundServer state() const;
    // A copy of the graph as known now.
    PipeWireGraph graph() const;

    bool isDead() const { return dead_; }  // any thread

    // --- Lock held, any thread.
    bool isSilent() const { return silent_; }
    PipeWireGraph& knownGraph() { return graph_; }
    void addListener(PipeWireListener& listener) { listeners_.push_back(&listener); }
    void removeListener(PipeWireListener& listener) { std::erase(listeners_, &listener); }

private:
    struct Metadata;
    explicit PipeWireSession(std::shared_ptr<PipeWireLoop> loop);
    void watch();
    void ask(double now);
    void answered(int sequence);
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
    // The first answer comes after the globals, the second one after the contents of the metadata objects among them.
    static constexpr int firstAnswers = 2;
    int answers_ = 0;     // up to firstAnswers
    bool asks_ = false;   // a question waits for its answer
    int question_ = 0;    // its sequence number
    double askedAt_ = 0;  // seconds
    bool silent_ = false;
    std::atomic<bool> dead_ = false;
};

}  // namespace brindlehum
