// Keeps what is wanted, and follows what the process says of it.
#include "monitor/engine/insert_windows.h"

#include <nlohmann/json.hpp>

namespace brindlehum {

using nlohmann::json;

void InsertWindows::open(const UUID& id, uint64_t parent, double scale) {
    windows_[id] = {parent, scale, 0, 0, {}};
    sendOpen(id, windows_[id]);
}

void InsertWindows::sendOpen(const UUID& id, const Window& window) {
    send_({{"do", "window"}, {"id", id.string()}, {"parent", window.parent}, {"scale", window.scale}});
}

void InsertWindows::close(const UUID& id) {
    if (windows_.erase(id) > 0) { send_({{"do", "closeWindow"}, {"id", id.string()}}); }
}

const InsertWindows::Window* InsertWindows::find(const UUID& id) const {
    const auto found = windows_.find(id);
    return found == windows_.end() ? nullptr : &found->second;
}

void InsertWindows::sendAll() {
    for (const auto& [id, window] : windows_) {
        if (window.problem.empty()) { sendOpen(id, window); }
    }
}

void InsertWindows::heard(const json& message) {
    const auto found = windows_.find(UUID::parse(message.value("id", "")).value_or(UUID()));
    if (found == windows_.end()) { return; }
    found->second.width = message.value("width", 0);
    found->second.height = message.value("height", 0);
    found->second.problem = message.value("why", "");
    Q_EMIT changed();
}

void InsertWindows::fail(const UUID& id, const std::string& problem) {
    const auto found = windows_.find(id);
    if (found == windows_.end()) { return; }
    found->second = {found->second.parent, found->second.scale, 0, 0, problem};
    Q_EMIT changed();
}

bool InsertWindows::failOpen(const std::string& problem) {
    bool any = false;
    for (auto& [id, window] : windows_) {
        if (window.width == 0) { continue; }
        any = true;
        fail(id, problem);
    }
    return any;
}

void InsertWindows::gone() {
    for (auto& [id, window] : windows_) { window.width = window.height = 0; }
    Q_EMIT changed();
}

}  // namespace brindlehum
