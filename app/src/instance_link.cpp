// InstanceLink: the lock that decides which process is the instance, and the socket that carries the files.
#include "app/instance_link.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QDeadlineTimer>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <QThread>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

#include "base/home_folder.h"

namespace brindlehum {

namespace {

constexpr const char* answer = "ok\n";
// By StartAim; no problem begins like these, and none for the usual aim.
constexpr std::array<std::string_view, 5> aimMarks = {"",
                                                      "\x01"
                                                      "edit",
                                                      "\x01"
                                                      "play",
                                                      "\x01"
                                                      "temp edits",
                                                      "\x01"
                                                      "quiet"};
constexpr qint64 chunk = 65536;  // bytes that wait in a peer's socket
constexpr int retryMs = 20;

QString fileIn(const std::filesystem::path& folder, const char* name) {
    return QString::fromStdString((folder / name).string());
}
QString socketIn(const std::filesystem::path& folder) {
    return fileIn(folder, "brindlehum.socket");
}

// Another user may have made a folder, or a link, of this name first.
bool belongsToUs(const std::filesystem::path& folder) {
    struct stat found {};
    return ::lstat(folder.c_str(), &found) == 0 && S_ISDIR(found.st_mode) && found.st_uid == ::getuid();
}

bool makePrivate(const std::filesystem::path& folder) {
    ::mkdir(folder.c_str(), 0700);
    return belongsToUs(folder) && ::chmod(folder.c_str(), 0700) == 0;
}

}  // namespace

QByteArray InstanceMessage::encode(const StartRequest& request) {
    QByteArray out;
    const auto add = [&out](const std::string& bytes) {
        if (!bytes.empty()) { out += QByteArray::fromStdString(bytes) + '\0'; }
    };
    for (const auto& file : request.files) { add(file.native()); }
    for (const auto& problem : request.problems) { add(problem); }
    add(std::string(aimMarks[size_t(request.aim)]));
    return out + '\0';
}

std::optional<StartRequest> InstanceMessage::decode(const QByteArray& bytes) {
    StartRequest request;
    qsizetype at = 0;
    while (true) {
        const qsizetype end = bytes.indexOf('\0', at);
        if (end < 0) { return std::nullopt; }
        if (end == at) { return request; }
        std::string item = bytes.mid(at, end - at).toStdString();
        if (item.starts_with('/')) {
            request.files.emplace_back(std::move(item));
        } else if (const auto mark = std::ranges::find(aimMarks, item); mark != aimMarks.end()) {
            request.aim = StartAim(mark - aimMarks.begin());
        } else {
            request.problems.push_back(std::move(item));
        }
        at = end + 1;
    }
}

std::filesystem::path InstanceLink::runtimeFolder() {
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (runtime && *runtime == '/' && belongsToUs(runtime)) { return runtime; }
    std::error_code error;
    const auto temporary = std::filesystem::temp_directory_path(error);
    if (!error) {
        auto own = temporary / ("brindlehum-" + std::to_string(::getuid()));
        if (makePrivate(own)) { return own; }
    }
    const char* cache = std::getenv("XDG_CACHE_HOME");
    const auto caches = cache && *cache == '/' ? std::filesystem::path(cache) : homeFolder() / ".cache";
    auto own = caches / "brindlehum" / "run";
    if (!own.is_absolute()) { return {}; }
    std::filesystem::create_directories(own.parent_path(), error);
    return makePrivate(own) ? own : std::filesystem::path();
}

InstanceLink::InstanceLink(std::filesystem::path folder) : folder_(std::move(folder)) {}

InstanceLink::~InstanceLink() {
    release();
}

InstanceLink::Outcome InstanceLink::start(const StartRequest& request, double patience) {
    const QByteArray message = InstanceMessage::encode(request);
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

bool InstanceLink::tell(const StartRequest& request, double patience) {
    return !folder_.empty() && handOver(InstanceMessage::encode(request), int(patience * 1000));
}

void InstanceLink::release() {
    server_.reset();
    peers_.clear();
    lock_.reset();
}

bool InstanceLink::claim() {
    if (folder_.empty()) { return true; }
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
        peer->setReadBufferSize(chunk);
        peers_.push_back({peer, {}});
        connect(peer, &QLocalSocket::disconnected, this, [this, peer] { drop(peer); });
        connect(peer, &QLocalSocket::readyRead, this, [this, peer] { receive(peer); });
        if (peers_.size() > maxPeers) { drop(peers_.front().socket); }
        receive(peer);
    }
}

void InstanceLink::drop(QLocalSocket* peer) {
    peers_.remove_if([peer](const Peer& one) { return one.socket == peer; });
    peer->disconnect(this);
    peer->abort();
    peer->deleteLater();
}

void InstanceLink::receive(QLocalSocket* peer) {
    const auto found = std::ranges::find(peers_, peer, &Peer::socket);
    if (found == peers_.end()) { return; }
    while (peer->bytesAvailable() > 0 && found->received.size() <= InstanceMessage::maxBytes) {
        found->received += peer->read(chunk);
    }
    if (found->received.size() > InstanceMessage::maxBytes) { return drop(peer); }
    const auto request = InstanceMessage::decode(found->received);
    if (!request) { return; }
    peers_.erase(found);
    peer->disconnect(this);
    connect(peer, &QLocalSocket::disconnected, peer, &QObject::deleteLater);
    peer->write(answer);
    peer->flush();
    peer->disconnectFromServer();
    if (onRequest) { onRequest(*request); }
}

}  // namespace brindlehum
