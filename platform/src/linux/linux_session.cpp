// LinuxSession: asks the file manager without waiting for its answer.
#include "platform/linux_session.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QProcess>
#include <QUrl>

namespace brindlehum {

namespace {

QString text(const std::filesystem::path& path) {
    return QString::fromStdString(path.string());
}

}  // namespace

void LinuxFileManager::openFolder(const std::filesystem::path& folder) {
    QProcess::startDetached(QStringLiteral("xdg-open"), {text(folder)});
}

void LinuxFileManager::reveal(const std::vector<std::filesystem::path>& items) {
    if (items.empty()) { return; }
    const std::filesystem::path folder = items.front().parent_path();
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) { return openFolder(folder); }
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    QStringList urls;
    for (const auto& item : items) { urls << QUrl::fromLocalFile(text(item)).toString(QUrl::FullyEncoded); }
    call.setArguments({urls, QString()});
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), &answers_);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &answers_, [this, watcher, folder] {
        if (QDBusPendingReply<>(*watcher).isError()) { openFolder(folder); }
        watcher->deleteLater();
    });
}

}  // namespace brindlehum
