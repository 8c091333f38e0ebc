// ControlProtocol: the rules of the control port as pure functions of a request head.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <string>

namespace brindlehum {

using ControlParams = std::map<std::string, std::string>;

namespace ControlProtocol {

inline constexpr size_t maxHead = 16384;  // bytes

using Handler = std::function<nlohmann::json(const std::string& command, const ControlParams& params)>;

// The whole response to a request head (without its closing empty line); `handler` may be empty.
//
// Who may ask: anyone on this machine who can set the header "X-Brindlehum: 1", which a web page can't do without
// the permission that the answer to OPTIONS gives. That is given to pages opened from local files alone.
std::string respond(const std::string& head, const Handler& handler);

}  // namespace ControlProtocol
}  // namespace brindlehum
