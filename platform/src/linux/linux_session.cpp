// LinuxSession: asks the file manager without waiting for its answer.
#include "platform/linux_session.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusReply>
#include <QProcess>
#include <QUrl>
#include <algorithm>

#include "linux/file_manager/linux_file_manager_watch.h"
#include "linux/file_manager/nautilus_previewer.h"
#include "linux/file_manager/wayland_front.h"
#include "linux/x11/x11_applications.h"
#include "linux/x11/x11_key_grab.h"
#include "linux/x11/x11_windows.h"

namespace brindlehum {

namespace {

QString text(const std::filesystem::path& path) {
    return QString::fromStdString(path.string());
}

// Where no key can be pressed.
class NoKeys : public Applications {
public:
    explicit NoKeys(KeyAccess access) : access_(access) {}
    KeyAccess access() const override { return access_; }
    std::vector<ApplicationWindow> windows() override { return {}; }
    void press(const ApplicationWindow&, const Keystroke&, std::function<void(KeyOutcome)>) override {}
    void finish() override {}

private:
    KeyAccess access_;
};

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

LinuxSession::LinuxSession(MainLoop& loop) {
    std::optional<NautilusPreviewer::SpaceKey> space;
    const bool isWayland = !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    applications_ = std::make_unique<NoKeys>(isWayland ? KeyAccess::wayland : KeyAccess::noDisplay);
    if (!isWayland) {
        auto windows = std::make_unique<X11Windows>();
        if (windows->isConnected()) {
            space = {[&screen = *windows] { return screen.isSpaceDown(); },
                     [&screen = *windows] { return screen.keyRepeatDelay(); }};
            isComposited_ = [&screen = *windows] { return screen.isComposited(); };
            applications_ = std::make_unique<X11Applications>(*windows, loop);
            watch_ = std::make_unique<LinuxFileManagerWatch>(std::move(windows));
            grab_ = std::make_unique<X11KeyGrab>(loop);
        }
    } else if (QDBusConnection::sessionBus().isConnected()) {
        watch_ = std::make_unique<LinuxFileManagerWatch>(std::make_unique<WaylandFront>());
    }
    if (QDBusConnection::sessionBus().isConnected()) {
        previewer_ = std::make_unique<NautilusPreviewer>(std::move(space));
    }
}

LinuxSession::~LinuxSession() = default;

bool LinuxSession::hasKeyring() {
    const QStringList keyrings = {QStringLiteral("org.freedesktop.secrets"), QStringLiteral("org.kde.kwalletd5"),
                                  QStringLiteral("org.kde.kwalletd6")};
    constexpr int patienceMs = 500;
    for (const char* method : {"ListNames", "ListActivatableNames"}) {
        const QString bus = QStringLiteral("org.freedesktop.DBus");
        const auto call =
            QDBusMessage::createMethodCall(bus, QStringLiteral("/org/freedesktop/DBus"), bus, QLatin1String(method));
        const QDBusReply<QStringList> names = QDBusConnection::sessionBus().call(call, QDBus::Block, patienceMs);
        const auto isThere = [&](const QString& name) { return names.value().contains(name); };
        if (names.isValid() && std::ranges::any_of(keyrings, isThere)) { return true; }
    }
    return false;
}

}  // namespace brindlehum
