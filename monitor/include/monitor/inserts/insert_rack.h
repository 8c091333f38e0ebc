// InsertRack: makes a chain of running effects of what the user has set, and keeps an eye on them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "monitor/inserts/insert.h"
#include "monitor/inserts/insert_chain.h"

namespace brindlehum {

// How one insert does.
struct InsertStatus {
    UUID id;
    std::string problem;  // why it isn't heard as it should, for the user; empty when all is well
    int latency = 0;      // frames
    int instances = 0;    // side by side
    bool operator==(const InsertStatus&) const = default;
};
void to_json(nlohmann::json& json, const InsertStatus& status);
void from_json(const nlohmann::json& json, InsertStatus& status);

// Control side, one thread. `host` must outlive it.
class InsertRack {
public:
    InsertRack(PluginHost& host, int channels) : host_(host), channels_(channels), chain_(channels) {}

    // What the device renders.
    InsertChain& target() { return chain_; }
    // Hz; only while no render runs. Makes the instances anew.
    void setSampleRate(double sampleRate);
    // Loads what is new, keeps what runs, and lets the rest go. What can't be had is left out and has a problem.
    void set(const std::vector<Insert>& inserts);
    void setValue(const UUID& id, const std::string& symbol, double value);
    void setFile(const UUID& id, const std::string& uri, const std::string& storedPath);
    // Makes a muted effect anew when it is to be heard again.
    void setBypassed(const UUID& id, bool bypassed);
    // Frees what faded out, and follows latencies that have changed. To be called now and then; true when status() has
    // changed.
    bool look();
    const std::vector<InsertStatus>& status() const { return status_; }
    int latency() const { return latency_; }  // frames, of all
    // A running insert and what it is, until the next change of the chain; null when there is none.
    struct Running {
        const PluginInfo* info = nullptr;
        std::shared_ptr<InsertUnit> unit;
    };
    Running running(const UUID& id) const;
    // What each plug-in keeps besides its controls.
    std::vector<std::pair<UUID, std::string>> states() const;
    // Place in set()'s list of the effect whose code is loaded or runs now, or ran last; -1 for none. Any thread.
    int busyWith() const noexcept;

private:
    struct Entry {
        Insert insert;
        PluginInfo info;
        std::shared_ptr<InsertUnit> unit;  // null when it can't be had
        std::string problem;
    };
    Entry* find(const UUID& id);
    Entry make(const Insert& insert);
    void apply(Entry& entry) const;
    void publish();
    std::vector<InsertStatus> now() const;

    PluginHost& host_;
    const int channels_;
    double sampleRate_ = 0;
    InsertChain chain_;
    std::vector<Entry> entries_;
    std::vector<int> heard_;    // places of the entries in the chain
    std::vector<int> planned_;  // their latencies
    std::vector<InsertStatus> status_;
    int latency_ = 0;
    std::atomic<int> loading_ = -1;
};

}  // namespace brindlehum
