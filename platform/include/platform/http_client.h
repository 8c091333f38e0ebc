// HttpClient: requests to servers.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "base/secret_text.h"

namespace brindlehum {

struct HttpRequest {
    std::string method = "GET";
    std::string url;  // as webAddress() takes it; others fail
    std::vector<std::pair<std::string, std::string>> headers{};
    std::optional<std::pair<std::string, SecretText>> secretHeader{};  // one more
    std::string body{};
    int redirects = 0;           // that a GET follows; the headers go to the first address alone
    int64_t maxBytes = 1 << 20;  // of the answer
    // Takes the body of an answer with status 200 as it arrives; an exception ends the exchange with its text.
    std::function<void(std::string_view bytes)> sink{};
};

struct HttpAnswer {
    std::string failure{};  // why there is no whole answer; empty otherwise
    int status = 0;
    std::string body{};  // without a sink
};

// Main thread. Sends nothing besides what the request says: no cookies, no stored passwords. A certificate that doesn't
// hold is a failure. There are no time limits: the caller ends an exchange that takes too long.
class HttpClient {
public:
    // An exchange under way. Its end ends the connection.
    class Exchange {
    public:
        virtual ~Exchange() = default;
    };
    virtual ~HttpClient() = default;
    // Returns at once. `done` is called once, later, unless the exchange is destroyed before; it
    // may destroy the exchange. A request with a body is
    // sent no more than once, even when the connection breaks off.
    [[nodiscard]] virtual std::unique_ptr<Exchange> send(HttpRequest request, std::function<void(HttpAnswer)> done) = 0;
};

}  // namespace brindlehum
