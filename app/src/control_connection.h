// ControlConnection: one client of the control port, from its first byte to the close.
#pragma once

#include <QByteArray>
#include <QObject>

class QTcpSocket;

namespace brindlehum {

class ControlServer;

// Main thread. Collects the request head, answers it once, then waits for the client to close. Deletes itself once the
// socket is closed.
class ControlConnection : public QObject {
    Q_OBJECT
public:
    // Takes ownership of the socket.
    ControlConnection(QTcpSocket* socket, ControlServer& server, QObject* parent);
    // Closes at once, without a response.
    void drop();

private:
    void readyRead();
    bool collect(const QByteArray& bytes);
    void respond(qsizetype headSize);
    void closeOurSide();

    QTcpSocket* socket_;
    ControlServer& server_;
    QByteArray buffer_;
    bool responded_ = false;
    qint64 discarded_ = 0;  // bytes that came after the head
};

}  // namespace brindlehum
