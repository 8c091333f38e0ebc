// ControlServer: the HTTP control port on the loopback interface, one request a connection, JSON out.
#pragma once

#include <QObject>
#include <cstdint>
#include <list>
#include <memory>

#include "app/control_protocol.h"

class QTcpServer;

namespace brindlehum {

class ControlConnection;

// Main thread: a command runs like a user action and needs no lock.
class ControlServer : public QObject {
    Q_OBJECT
public:
    static constexpr uint16_t port = 47806;
    // Connections held at once. One more ends the oldest, so that clients that connect and stay silent never block the
    // others.
    static constexpr size_t maxConnections = 256;

    explicit ControlServer(QObject* parent = nullptr);
    ~ControlServer() override;

    ControlProtocol::Handler handler;  // set before start()
    // Opens the listener on 127.0.0.1; does nothing when it is open, or when another program has the port. 0 takes any
    // free port, for tests.
    void start(uint16_t onPort = port);
    bool isListening() const;
    uint16_t listeningPort() const;

private:
    void accept();
    std::unique_ptr<QTcpServer> listener_;
    std::list<ControlConnection*> connections_;  // oldest first; children of the listener
};

}  // namespace brindlehum
