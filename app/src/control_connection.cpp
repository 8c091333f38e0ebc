// ControlConnection: collects a client's request head, answers it, and waits for the client to close.
#include "control_connection.h"

#include <sys/socket.h>

#include <QTcpSocket>
#include <algorithm>

#include "app/control_server.h"
#include "base/text.h"

namespace brindlehum {

namespace {

constexpr qint64 chunk = 16384;  // bytes per read
// Bytes that a client may send after its head before the connection is dropped.
constexpr qint64 maxDiscarded = 1 << 20;

}  // namespace

ControlConnection::ControlConnection(QTcpSocket* socket, ControlServer& server, QObject* parent)
    : QObject(parent), socket_(socket), server_(server) {
    socket_->setParent(this);
    socket_->setReadBufferSize(chunk);
    connect(socket_, &QTcpSocket::readyRead, this, &ControlConnection::readyRead);
    connect(socket_, &QTcpSocket::bytesWritten, this, &ControlConnection::closeOurSide);
    connect(socket_, &QTcpSocket::disconnected, this, &QObject::deleteLater);
    // Check at once: data or a disconnect from before these connections were made sends no further signal.
    if (socket_->state() != QAbstractSocket::ConnectedState) {
        deleteLater();
    } else if (socket_->bytesAvailable() > 0) {
        readyRead();
    }
}

void ControlConnection::drop() {
    responded_ = true;
    socket_->abort();
    deleteLater();
}

void ControlConnection::readyRead() {
    while (socket_->bytesAvailable() > 0) {
        const QByteArray bytes = socket_->read(chunk);
        if (bytes.isEmpty()) { return; }
        if (responded_) {
            discarded_ += bytes.size();
            if (discarded_ > maxDiscarded) { return drop(); }
        } else if (!collect(bytes)) {
            return drop();
        }
    }
}

// False when the head has grown past its limit.
bool ControlConnection::collect(const QByteArray& bytes) {
    // The terminator may span the old and the new bytes.
    const qsizetype from = std::max<qsizetype>(buffer_.size() - 3, 0);
    buffer_ += bytes;
    const qsizetype end = buffer_.indexOf("\r\n\r\n", from);
    if (end < 0) { return size_t(buffer_.size()) <= ControlProtocol::maxHead; }
    respond(end);
    return true;
}

void ControlConnection::respond(qsizetype headSize) {
    responded_ = true;
    const std::string head = repairUtf8(buffer_.left(headSize).toStdString());
    buffer_.clear();
    const std::string response = ControlProtocol::respond(head, server_.listeningPort(), server_.handler);
    socket_->write(response.data(), qint64(response.size()));
    socket_->flush();
    closeOurSide();
}

// Closes only the sending side and keeps reading: closing a socket with unread bytes (a body, a second request) would
// reset the connection, and the client might lose the response.
void ControlConnection::closeOurSide() {
    if (!responded_ || socket_->bytesToWrite() > 0) { return; }
    ::shutdown(int(socket_->socketDescriptor()), SHUT_WR);
}

}  // namespace brindlehum
