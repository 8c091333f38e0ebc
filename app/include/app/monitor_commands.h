// MonitorCommands: the control port's commands for the monitor.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "app/control_protocol.h"
#include "monitor/engine/monitor_engine.h"

namespace brindlehum {

// Main thread. The monitor must outlive this object.
class MonitorCommands {
public:
    explicit MonitorCommands(MonitorEngine& monitor) : monitor_(monitor) {}

    // Carries out `action` ("dim", "mute", "fold", "up", "down", "start", "stop", "upmix", "upmix-next", "switch",
    // "reference", "mono-sum", "side", "bypass", "inserts-restart", "loudness-reset"; another one changes nothing) and
    // answers how the monitor stands after it.
    nlohmann::json handle(const ControlParams& params);

private:
    void act(const std::string& action, const ControlParams& params);

    MonitorEngine& monitor_;
};

}  // namespace brindlehum
