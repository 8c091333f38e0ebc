// InsertWindows: which inserts show the window that comes with them, and how those windows do.
#pragma once

#include <QObject>
#include <functional>
#include <map>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "settings/uuid.h"

namespace brindlehum {

// Main thread. The process that hosts the inserts draws the windows; what it is told and tells goes through
// MonitorInserts.
class InsertWindows : public QObject {
    Q_OBJECT
public:
    using Send = std::function<void(const nlohmann::json&)>;

    // `send` reaches the process while there is one.
    explicit InsertWindows(Send send) : send_(std::move(send)) {}

    struct Window {
        uint64_t parent = 0;
        double scale = 1;
        int width = 0, height = 0;  // pixels of the screen; 0 until it is open
        std::string problem;        // why it isn't, for the user; empty while it may be on its way
    };
    // Shows it inside `parent`, an X11 window, as soon as the insert runs; `scale` is what a pixel of the desktop
    // measures on the screen. The parent must stay until a moment after close().
    void open(const UUID& id, uint64_t parent, double scale);
    void close(const UUID& id);
    // Null for one that nobody wants to see.
    const Window* find(const UUID& id) const;

    // --- For MonitorInserts.
    // The process is a new one.
    void sendAll();
    void heard(const nlohmann::json& message);
    // Its code has brought the process down, or may have.
    void fail(const UUID& id, const std::string& problem);
    // Those that were open when the process didn't answer any more. False when there were none.
    bool failOpen(const std::string& problem);
    void gone();  // the process

Q_SIGNALS:
    void changed();

private:
    void sendOpen(const UUID& id, const Window& window);

    Send send_;
    std::map<UUID, Window> windows_;
};

}  // namespace brindlehum
