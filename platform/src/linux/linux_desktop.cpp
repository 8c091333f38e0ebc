// The desktop's file manager, asked without waiting for it.
#include "platform/linux_desktop.h"

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

void LinuxDesktop::openFolder(const std::filesystem::path& folder) {
    QProcess::startDetached(QStringLiteral("xdg-open"), {text(folder)});
}

void LinuxDesktop::reveal(const std::filesystem::path& file) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return openFolder(file.parent_path());
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("/org/freedesktop/FileManager1"),
        QStringLiteral("org.freedesktop.FileManager1"), QStringLiteral("ShowItems"));
    const QString url = QUrl::fromLocalFile(text(file)).toString(QUrl::FullyEncoded);
    call.setArguments({QStringList{url}, QString()});
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), &answers_);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &answers_, [this, watcher, file] {
        if (QDBusPendingReply<>(*watcher).isError()) openFolder(file.parent_path());
        watcher->deleteLater();
    });
}

}  // namespace brindlehum
