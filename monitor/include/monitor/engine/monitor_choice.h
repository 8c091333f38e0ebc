// MonitorChoice: keeps what the user has set on the monitor over a restart of the program.
#pragma once

#include <optional>
#include <string>

#include "monitor/state/monitor_state.h"
#include "settings/user_defaults.h"
#include "settings/uuid.h"

namespace brindlehum {

// Main thread. What can't be read counts as not set.
class MonitorChoice {
public:
    explicit MonitorChoice(UserDefaults& defaults) : defaults_(defaults) {}

    MonitorState state() const;
    std::optional<std::string> sourceUID() const;
    std::optional<UUID> profileID() const;
    std::optional<UUID> otherProfileID() const;
    void keep(const MonitorState& state);
    void keepSource(const std::optional<std::string>& uid);
    void keepProfile(const std::optional<UUID>& id);
    void keepOtherProfile(const std::optional<UUID>& id);

private:
    UserDefaults& defaults_;
};

}  // namespace brindlehum
