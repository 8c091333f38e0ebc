// MonitorInserts: the chain of effects behind the monitor, kept over a restart, and the life of the process that hosts
// it.
#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "monitor/engine/insert_helper.h"
#include "monitor/engine/insert_windows.h"
#include "monitor/inserts/insert.h"
#include "monitor/inserts/insert_rack.h"
#include "platform/main_loop.h"
#include "settings/user_defaults.h"

namespace brindlehum {

// Main thread. The chain is kept under "monitor.inserts". The process runs while the monitor plays and the chain isn't
// empty; once it has crashed or hung, it starts again only when it is asked to.
class MonitorInserts : public QObject {
    Q_OBJECT
public:
    using HelperMaker = std::function<std::unique_ptr<InsertHelper>()>;

    // `defaults` and `loop` must outlive it. Starts nothing.
    MonitorInserts(UserDefaults& defaults, MainLoop& loop, HelperMaker makeHelper = startInsertHelper);
    ~MonitorInserts() override;

    // In the order in which they are heard. An unknown id changes nothing in all that follows.
    const std::vector<Insert>& list() const { return list_; }
    const Insert* find(const UUID& id) const;
    UUID add(const PluginInfo& plugin);
    void remove(const UUID& id);
    void move(const UUID& id, int place);  // from 0
    void toggleBypass(const UUID& id);
    void setValue(const UUID& id, const std::string& symbol, double value);
    void setFile(const UUID& id, const std::string& uri, const std::string& storedPath);

    // Why an insert isn't heard as it should; empty when all is well, and while it isn't loaded.
    std::string problemOf(const UUID& id) const;
    // Why none is heard; empty when all is well.
    const std::string& message() const { return message_; }
    bool hasFailed() const { return failed_; }
    // Loads them once more after they have failed.
    void restart();
    double latency() const;  // seconds, of all that are heard; 0 while none is
    // Those that come with them.
    InsertWindows& windows() { return windows_; }

    // --- For the engine.
    struct Route {
        bool isPending = false;  // they are being loaded; routeChanged() follows
        uint32_t node = 0;       // that the sound goes through; 0 for none
    };
    // Loads the chain for this device if need be.
    Route route(uint32_t output, int channels);
    // Whether the sound should take another way than this one by now.
    bool isStale(const Route& route) const { return route.node != node(); }
    // Nothing is heard any more.
    void release();

Q_SIGNALS:
    void changed();       // chain, problems, message or latency
    void routeChanged();  // isStale() or Route::isPending
    // Somebody wants to see the controls of an insert.
    void uiWanted(const QString& id);

private:
    uint32_t node() const { return list_.empty() || failed_ ? 0 : node_; }
    void edited();
    void keep();
    void changedInside(const nlohmann::json& message);
    void ensure();
    void sendChain(const char* what);
    void heard(const nlohmann::json& message);
    void ended(const std::string& why);
    void saveSoon();
    void drop();
    void startAgain();
    void fail(std::string why);
    void tick();
    void takeStates(const nlohmann::json& states);
    std::string nameAt(int place) const;

    UserDefaults& defaults_;
    MainLoop& loop_;
    HelperMaker makeHelper_;
    std::vector<Insert> list_;
    std::vector<InsertStatus> status_;
    std::string message_;
    bool failed_ = false;

    std::unique_ptr<InsertHelper> helper_;
    std::unique_ptr<InsertHelper> leaving_;  // is to end by itself
    uint32_t output_ = 0;                    // device; 0 while the monitor doesn't play
    int channels_ = 0;
    uint32_t node_ = 0;  // of the helper; 0 while it isn't there
    int frames_ = 0;     // latency
    double sampleRate_ = 0;
    bool isBusy_ = false;    // it loads, and may answer late
    double lastHeard_ = 0;   // seconds
    std::string lastWords_;  // why the helper will have ended
    bool windowCrashed_ = false;
    InsertWindows windows_{[this](const nlohmann::json& message) {
        if (helper_) { helper_->send(message); }
    }};
    TimerHandle ticks_, save_, leave_;
};

}  // namespace brindlehum
