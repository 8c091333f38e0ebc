// InstanceLink: the lock that decides which process is the instance, and the socket that carries the files.
#include "app/instance_link.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QDeadlineTimer>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <QThread>
#include <cstdlib>

namespace brindlehum {

namespace {

constexpr const char* answer = "ok\n";
constexpr qsizetype maxMessage = 16 << 20;  // bytes; a command line holds far fewer
constexpr int retryMs = 20;

QString fileIn(const std::filesystem::path& folder, const char* name) {
    return QString::fromStdString((folder / name).string());
}
QString socketIn(const std::filesystem::path& folder) {
    return fileIn(folder, "brindlehum.socket");
}

}  // namespace

QByteArray InstanceMessage::encode(const std::vector<std::filesystem::path>& files) {
    QByteArray out;
    for (const auto& file : files) {
        if (!file.empty()) { out += QByteArray::fromStdString(file.native()) + '\0'; }
    }
    return out + '\0';
}

std::optional<std::vector<std::filesystem::path>> InstanceMessage::decode(const QByteArray& bytes) {
    std::vector<std::filesystem::path> files;
    qsizetype at = 0;
    while (true) {
        const qsizetype end = bytes.indexOf('\0', at);
        if (end < 0) { return std::nullopt; }
        if (end == at) { return files; }
        files.emplace_back(bytes.mid(at, end - at).toStdString());
        at = end + 1;
    }
}

std::filesystem::path InstanceLink::runtimeFolder() {
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    std::error_code error;
    if (runtime && *runtime == '/' && std::filesystem::is_directory(runtime, error)) { return runtime; }
    const auto temporary = std::filesystem::temp_directory_path(error);
    if (error) { return {}; }
    const auto own = temporary / ("brindlehum-" + std::to_string(::getuid()));
    ::mkdir(own.c_str(), 0700);
    // Another user may have made a folder of this name first, so use it only if we own it.
    struct stat found {};
    if (::lstat(own.c_str(), &found) != 0 || !S_ISDIR(found.st_mode) || found.st_uid != ::getuid()) { return {}; }
    return own;
}

InstanceLink::InstanceLink(std::filesystem::path folder) : folder_(std::move(folder)) {}

InstanceLink::~InstanceLink() {
    release();
}

InstanceLink::Outcome InstanceLink::start(const std::vector<std::filesystem::path>& files, double patience) {
    const QByteArray message = InstanceMessage::encode(files);
    const QDeadlineTimer deadline(qint64(patience * 1000));
    // The lock alone decides, so that exactly one of two simultaneous starts becomes the instance. The other one may
    // try to connect before the socket exists, so it retries.
    while (!claim()) {
        if (handOver(message, int(deadline.remainingTime()))) { return Outcome::handedOver; }
        if (deadline.hasExpired()) { return Outcome::unanswered; }
        QThread::msleep(retryMs);
    }
    return Outcome::instance;
}

void InstanceLink::release() {
    server_.reset();
    lock_.reset();
}

bool InstanceLink::claim() {
    auto lock = std::make_unique<QLockFile>(fileIn(folder_, "brindlehum.lock"));
    lock->setStaleLockTime(0);  // stale once its process is gone, never by age
    if (!lock->tryLock(0)) { return lock->error() != QLockFile::LockFailedError; }
    lock_ = std::move(lock);
    server_ = std::make_unique<QLocalServer>();
    server_->setSocketOptions(QLocalServer::UserAccessOption);
    connect(server_.get(), &QLocalServer::newConnection, this, &InstanceLink::accept);
    // Only the lock's holder makes the socket, so an existing socket is a leftover.
    QLocalServer::removeServer(socketIn(folder_));
    server_->listen(socketIn(folder_));
    return true;
}

bool InstanceLink::handOver(const QByteArray& message, int milliseconds) {
    QLocalSocket socket;
    socket.connectToServer(socketIn(folder_));
    if (!socket.waitForConnected(milliseconds)) { return false; }
    socket.write(message);
    const QDeadlineTimer deadline(milliseconds);
    while (socket.bytesAvailable() < qint64(qstrlen(answer))) {
        if (!socket.waitForReadyRead(int(deadline.remainingTime()))) { return false; }
    }
    return socket.readAll() == answer;
}

void InstanceLink::accept() {
    while (QLocalSocket* peer = server_->nextPendingConnection()) {
        connect(peer, &QLocalSocket::disconnected, peer, &QObject::deleteLater);
        connect(peer, &QLocalSocket::readyRead, this, [this, peer] { receive(peer); });
        receive(peer);
    }
}

void InstanceLink::receive(QLocalSocket* peer) {
    if (peer->bytesAvailable() > maxMessage) { return peer->abort(); }
    const auto files = InstanceMessage::decode(peer->peek(maxMessage));
    if (!files) { return; }
    peer->readAll();
    peer->write(answer);
    peer->flush();
    peer->disconnectFromServer();
    if (onFiles) { onFiles(*files); }
}

}  // namespace brindlehum
