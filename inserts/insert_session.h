// InsertSession: carries out what the monitor says, and tells how the inserts do.
#pragma once

#include <functional>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "effect_windows.h"
#include "monitor/inserts/insert_rack.h"
#include "platform/duplex_audio.h"
#include "platform/main_loop.h"

namespace brindlehum {

// Main thread. Messages are JSON objects, one a line. Those that come name what to do in "do":
//     open    "output" (id of the device), "channels", "inserts" (list of Insert): makes the node and its chain
//     chain   "inserts": another chain on the same node
//     value   "id", "symbol", "value";  file  "id", "uri", "path";  bypass  "id", "on"
//     window  "id", "parent" (X11 window), "scale": opens the effect's own window in it;  closeWindow  "id"
//     save, ping
// Those that go name what they are in "is":
//     open    "node", "sampleRate": the node is there;  closed: it has gone, and is being made anew
//     status  "inserts" (list of InsertStatus), "latency" (frames)
//     window  "id", "width", "height" (pixels): it is open, or has another size;  noWindow  "id", "why"
//     set     "id", "symbol", "value";  file  "id", "uri", "path";  bypass  "id", "on": what its user has done there
//     edited  a window has changed what an effect keeps
//     states  "states" (texts by id);  pong
//     stalled, crash   "insert" (place in the chain, or -1), or "window" (id): the last words
class InsertSession {
public:
    using Tell = std::function<void(const nlohmann::json&)>;

    InsertSession(AudioSystem& audio, PluginHost& host, MainLoop& loop, Tell tell);

    // A line that isn't a message changes nothing.
    void handle(const std::string& line);
    // See InsertRack::busyWith(). Any thread.
    int busyWith() const noexcept;
    // See EffectWindows::lastWords(). Any thread.
    const char* lastWordsOfWindow() const noexcept { return windows_.lastWords(); }

private:
    void act(const nlohmann::json& message);
    void open();
    void close();
    void look();
    void watchForStall();
    void tellStatus();
    void tellStates();

    AudioSystem& audio_;
    PluginHost& host_;
    MainLoop& loop_;
    const Tell tell_;
    bool wanted_ = false;  // a node
    uint32_t output_ = 0;
    int channels_ = 0;
    std::vector<Insert> inserts_;
    std::unique_ptr<InsertRack> rack_;
    EffectWindows windows_;  // of the rack's effects
    std::unique_ptr<PassStream> stream_;
    uint32_t told_ = 0;  // the node that has been told
    uint64_t block_ = 0;
    int stalls_ = 0;  // looks that found the same block unfinished
    TimerHandle looks_, retry_;
};

}  // namespace brindlehum
