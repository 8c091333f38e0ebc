// WebAddress: an address that may be asked: https anywhere, http on this machine alone.
#pragma once

#include <optional>
#include <string>

namespace brindlehum {

struct WebAddress {
    std::string url;
    std::string origin;  // scheme, host and port in one form (RFC 6454): equal for addresses of one server
    std::string host;    // for the user, with the port if it isn't the usual one
    bool isThisMachine = false;
};

// None for other schemes, for addresses with a user name or a password, and for what is no address.
std::optional<WebAddress> webAddress(const std::string& text);
// The same for an address that paths are put below: it ends with "/", and has neither query nor fragment.
std::optional<WebAddress> baseAddress(const std::string& text);
// What a redirect from `from` leads to; none where it mustn't be followed. Only this machine leads to itself.
std::optional<WebAddress> redirected(const WebAddress& from, const std::string& location);

}  // namespace brindlehum
