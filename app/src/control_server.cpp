// ControlServer: listens, and limits the number of open connections.
#include "app/control_server.h"

#include <QHostAddress>
#include <QNetworkProxy>
#include <QTcpServer>
#include <QTcpSocket>

#include "control_connection.h"

namespace brindlehum {

ControlServer::ControlServer(QObject* parent) : QObject(parent) {}

ControlServer::~ControlServer() {
    listener_.reset();  // also ends the connections, which remove themselves from the list
}

void ControlServer::start(uint16_t onPort) {
    if (listener_) { return; }
    auto listener = std::make_unique<QTcpServer>();
    listener->setProxy(QNetworkProxy::NoProxy);
    listener->setListenBacklogSize(int(maxConnections));
    listener->setMaxPendingConnections(int(maxConnections));
    // Qt sets the socket to reuse the address, so a restart needn't wait for old connections to time out.
    if (listener->listen(QHostAddress::LocalHost, onPort)) {
        problem_.clear();
        listener_ = std::move(listener);
        connect(listener_.get(), &QTcpServer::newConnection, this, &ControlServer::accept);
    } else {
        const bool isTaken = listener->serverError() == QAbstractSocket::AddressInUseError;
        problem_ = "The control port " + std::to_string(onPort) +
                   (isTaken ? std::string(" is taken by another program")
                            : " can't be opened: " + listener->errorString().toStdString());
    }
    Q_EMIT started();
}

bool ControlServer::isListening() const {
    return listener_ != nullptr;
}

uint16_t ControlServer::listeningPort() const {
    return listener_ ? listener_->serverPort() : 0;
}

void ControlServer::accept() {
    while (QTcpSocket* socket = listener_->nextPendingConnection()) {
        auto* connection = new ControlConnection(socket, *this, listener_.get());
        connections_.push_back(connection);
        connect(connection, &QObject::destroyed, this, [this, connection] { connections_.remove(connection); });
        if (connections_.size() > maxConnections) {
            ControlConnection* oldest = connections_.front();
            connections_.pop_front();
            oldest->drop();
        }
    }
}

}  // namespace brindlehum
