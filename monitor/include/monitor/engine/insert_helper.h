// InsertHelper: the process that hosts the inserts, as the monitor sees it.
#pragma once

#include <functional>
#include <memory>
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace brindlehum {

// Main thread. The process ends with the object. inserts/insert_session.h lists the messages.
class InsertHelper {
public:
    virtual ~InsertHelper() = default;
    virtual void send(const nlohmann::json& message) = 0;
    // Lets it end by itself, after it has answered all that was sent.
    virtual void finish() = 0;
    // Waits for that, at most so many seconds. Its last messages arrive meanwhile.
    virtual void waitForEnd(double seconds) = 0;

    std::function<void(const nlohmann::json&)> onMessage;
    // It has ended, or didn't start: why, for the user. The handler may destroy the object later, not at once.
    std::function<void(const std::string&)> onEnd;
};

// The program brindlehum-inserts, which stands beside this one or, when both are installed, in the folder of helpers.
std::unique_ptr<InsertHelper> startInsertHelper();

}  // namespace brindlehum
