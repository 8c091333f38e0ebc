// ControlServer: the HTTP control port on the loopback interface, one request a connection, JSON out.
#pragma once

#include <QObject>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

class QTcpServer;

namespace brindlehum {

using ControlParams = std::map<std::string, std::string>;

// The browser-facing rules as pure functions of the request head.
namespace ControlProtocol {

inline constexpr size_t maxHead = 16384;  // bytes

using Handler = std::function<nlohmann::json(const std::string& command, const ControlParams& params)>;
// The whole response to a request head (without its closing empty line); `handler` may be empty.
std::string respond(const std::string& head, const Handler& handler);
// UTF-8 with every invalid sequence replaced by U+FFFD.
std::string repaired(const std::string& bytes);

}  // namespace ControlProtocol

// Main thread: a command runs like a user action and needs no lock.
class ControlServer : public QObject {
    Q_OBJECT
public:
    static constexpr uint16_t port = 47806;

    explicit ControlServer(QObject* parent = nullptr);
    ~ControlServer() override;

    ControlProtocol::Handler handler;  // set before start()
    // Opens the listener on 127.0.0.1; does nothing when it is open. A port that is taken is left alone silently.
    // Tests pass 0 for a free one.
    void start(uint16_t onPort = port);
    bool isListening() const;
    uint16_t listeningPort() const;

private:
    void accept();
    std::unique_ptr<QTcpServer> listener_;
};

}  // namespace brindlehum
