// MonitorCommands: the control port's commands for the monitor.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <vector>

#include "app/control_protocol.h"
#include "monitor/engine/monitor_engine.h"

namespace brindlehum {

// Main thread. The monitor must outlive this object.
class MonitorCommands {
public:
    explicit MonitorCommands(MonitorEngine& monitor) : monitor_(monitor) {}

    // Carries out the parameter `action`, one of those in forms(); another one changes nothing. Answers how the monitor
    // stands after it.
    nlohmann::json handle(const ControlParams& params);
    static std::vector<ControlForm> forms();

private:
    MonitorEngine& monitor_;
};

}  // namespace brindlehum
