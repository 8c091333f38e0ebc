// PipeWireBus: a sink of our own, into which other programs play.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "pipewire_session.h"

namespace brindlehum {

// Main thread. It exists as long as the object and the session do.
class PipeWireBus {
public:
    static constexpr const char* nodeName = "brindlehum-bus";

    // `positions` are the names of its channels.
    PipeWireBus(std::shared_ptr<PipeWireSession> session, const std::vector<std::string>& positions);
    ~PipeWireBus();
    PipeWireBus(const PipeWireBus&) = delete;
    PipeWireBus& operator=(const PipeWireBus&) = delete;

private:
    const std::shared_ptr<PipeWireSession> session_;
    pw_proxy* proxy_ = nullptr;
};

}  // namespace brindlehum
