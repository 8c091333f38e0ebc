// ControlProtocol: parses a request head, decides whether to serve it, and writes the response.
#include "app/control_protocol.h"

#include <QByteArray>
#include <QString>
#include <QUrl>
#include <QUrlQuery>
#include <algorithm>
#include <nlohmann/json.hpp>
#include <string_view>
#include <vector>

#include "base/text.h"

namespace brindlehum::ControlProtocol {

namespace {

using nlohmann::json;

struct Head {
    std::vector<std::string> request;            // the blank-separated parts of the first line
    std::map<std::string, std::string> headers;  // keys in lower case
    std::string value(const std::string& key) const {
        const auto it = headers.find(key);
        return it == headers.end() ? std::string() : it->second;
    }
};

std::vector<std::string> parts(std::string_view line) {
    std::vector<std::string> out;
    for (size_t at = 0; at < line.size();) {
        const size_t end = std::min(line.find(' ', at), line.size());
        if (end > at) { out.emplace_back(line.substr(at, end - at)); }
        at = end + 1;
    }
    return out;
}

Head parse(std::string_view text) {
    Head head;
    bool first = true;
    while (true) {
        const size_t end = text.find("\r\n");
        const std::string_view line = text.substr(0, end);
        const size_t colon = line.find(':');
        if (first) {
            head.request = parts(line);
        } else if (colon != std::string_view::npos) {
            head.headers[lowerAscii(line.substr(0, colon))] = trimmed(line.substr(colon + 1));
        }
        if (end == std::string_view::npos) { return head; }
        first = false;
        text.remove_prefix(end + 2);
    }
}

constexpr const char* anyPage = "null";  // pages of local files, but also sandboxed frames of any site

// True for no origin (a tool), "null" and a file origin (a page opened from this machine). False with any control
// character: the response's head repeats the origin, and the character could start a new line there.
bool isAllowed(const std::string& origin) {
    const auto isControl = [](char c) { return uint8_t(c) < 0x20 || c == 0x7F; };
    if (std::ranges::any_of(origin, isControl)) { return false; }
    return origin.empty() || origin == anyPage || origin.starts_with("file://");
}

// True for this machine, with our port or none. Browsers always send a host, so only a tool leaves it out.
bool isOurHost(const std::string& host, uint16_t port) {
    const std::string ours = ":" + std::to_string(port);
    const std::string name = lowerAscii(host.ends_with(ours) ? host.substr(0, host.size() - ours.size()) : host);
    return name.empty() || name == "127.0.0.1" || name == "localhost" || name == "[::1]";
}

bool changesSomething(const std::string& command) {
    return command != "status";
}

std::string responseHead(const char* status, const std::string& allowedOrigin) {
    std::string out = std::string("HTTP/1.1 ") + status + "\r\n";
    if (!allowedOrigin.empty()) {
        out += "Access-Control-Allow-Origin: " + allowedOrigin + "\r\n";
        out += "Access-Control-Allow-Headers: X-Brindlehum\r\n";
        out += "Access-Control-Allow-Methods: GET\r\n";
    }
    return out;
}

std::string withoutBody(const char* status, const std::string& allowedOrigin) {
    return responseHead(status, allowedOrigin) + "Content-Length: 0\r\nConnection: close\r\n\r\n";
}

std::string withJSON(const char* status, const std::string& allowedOrigin, const json& payload) {
    std::string body;
    try {
        // File names needn't be UTF-8: invalid bytes become U+FFFD.
        body = payload.dump(-1, ' ', false, json::error_handler_t::replace);
    } catch (const json::exception&) { body = "{}"; }
    return responseHead(status, allowedOrigin) +
           "Content-Type: application/json\r\nContent-Length: " + std::to_string(body.size()) +
           "\r\nConnection: close\r\n\r\n" + body;
}

struct Command {
    std::string name;
    ControlParams params;
};

Command command(const std::string& target) {
    const QUrl url(QStringLiteral("http://localhost") + QString::fromStdString(target));
    Command out;
    if (!url.isValid()) { return out; }
    const std::string path = url.path(QUrl::FullyDecoded).toStdString();
    const size_t first = path.find_first_not_of('/');
    if (first != std::string::npos) { out.name = path.substr(first, path.find_last_not_of('/') - first + 1); }
    // A plus sign isn't a blank: this is a URL's query, not a form. Values are bytes: a path needn't be UTF-8.
    for (const auto& [key, value] : QUrlQuery(url).queryItems(QUrl::FullyEncoded)) {
        out.params[QUrl::fromPercentEncoding(key.toUtf8()).toStdString()] =
            QByteArray::fromPercentEncoding(value.toUtf8()).toStdString();
    }
    return out;
}

}  // namespace

std::string respond(const std::string& head, uint16_t port, const Handler& handler) {
    const Head request = parse(head);
    const std::string origin = request.value("origin");
    const bool allowed = isAllowed(origin) && isOurHost(request.value("host"), port);
    const std::string echoed = allowed ? origin : std::string();

    if (!request.request.empty() && request.request[0] == "OPTIONS") {
        return withoutBody(allowed ? "204 No Content" : "403 Forbidden", echoed);
    }
    if (request.request.size() < 2 || request.value("x-brindlehum") != "1" || !allowed) {
        return withJSON("403 Forbidden", echoed, {{"error", "forbidden"}});
    }
    if (!handler) { return withJSON("400 Bad Request", echoed, {{"error", "not ready"}}); }
    const Command asked = command(request.request[1]);
    if (origin == anyPage && changesSomething(asked.name)) {
        return withJSON("403 Forbidden", echoed, {{"error", "forbidden"}});
    }
    const json payload = handler(asked.name, asked.params);
    return withJSON(payload.contains("error") ? "400 Bad Request" : "200 OK", echoed, payload);
}

}  // namespace brindlehum::ControlProtocol
