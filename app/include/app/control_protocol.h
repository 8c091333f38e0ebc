// ControlProtocol: the rules of the control port as pure functions of a request head.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace brindlehum {

using ControlParams = std::map<std::string, std::string>;

// One way to give a command: what follows its name and a question mark, as an example, and what that does.
struct ControlForm {
    const char* query;
    const char* meaning;
};

namespace ControlProtocol {

inline constexpr size_t maxHead = 16384;  // bytes

using Handler = std::function<nlohmann::json(const std::string& command, const ControlParams& params)>;

// The whole response to a request head (without its closing empty line); `handler` may be empty, `port` is ours.
//
// Serves every program on this machine that sets the header "X-Brindlehum: 1". A web page can set it only with the
// permission in the answer to OPTIONS, which pages of local files get. The origin "null" gets it, too, but any site can
// take on that origin: it may only ask for the status. A host that isn't this machine is refused, because a site whose
// name leads here would otherwise count as one without an origin.
std::string respond(const std::string& head, uint16_t port, const Handler& handler);

}  // namespace ControlProtocol
}  // namespace brindlehum
