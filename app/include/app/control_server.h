// ControlServer: the HTTP control port on the loopback interface; one request per connection, answered in JSON.
#pragma once

#include <QObject>
#include <cstdint>
#include <list>
#include <memory>
#include <string>

#include "app/control_protocol.h"

class QTcpServer;

namespace brindlehum {

class ControlConnection;

// Main thread: a command runs like a user's action and needs no lock.
class ControlServer : public QObject {
    Q_OBJECT
public:
    static constexpr uint16_t port = 47806;
    // The most connections open at once. One more drops the oldest, so that silent clients never block the others.
    static constexpr size_t maxConnections = 256;

    explicit ControlServer(QObject* parent = nullptr);
    ~ControlServer() override;

    ControlProtocol::Handler handler;  // set it before start()
    // Opens the listener on 127.0.0.1, unless it is open already. Port 0 takes any free port, for tests.
    void start(uint16_t onPort = port);
    bool isListening() const;
    uint16_t listeningPort() const;
    // Why the last start failed, in one line, as when another program has the port; empty after a success.
    const std::string& problem() const { return problem_; }

Q_SIGNALS:
    void started();  // or failed to

private:
    void accept();
    std::unique_ptr<QTcpServer> listener_;
    std::string problem_;
    std::list<ControlConnection*> connections_;  // oldest first; children of the listener
};

}  // namespace brindlehum
