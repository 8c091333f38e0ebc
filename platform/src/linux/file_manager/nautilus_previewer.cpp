// Requests for a preview over D-Bus.
#include "nautilus_previewer.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QUrl>

namespace brindlehum {
namespace {

const auto previewer = QStringLiteral("org.gnome.NautilusPreviewer");
const auto objectPath = QStringLiteral("/org/gnome/NautilusPreviewer");
const auto showInterface = QStringLiteral("org.gnome.NautilusPreviewer2");
const auto bus = QStringLiteral("org.freedesktop.DBus");

constexpr int repeatPeriodMs = 100;   // no second press of a hand comes sooner
constexpr int passTimeoutMs = 20000;  // a previewer has to be started

// By bytes, since a file's name needn't be text.
std::filesystem::path pathOf(const QString& uri) {
    const QByteArray encoded = uri.toUtf8();
    if (!encoded.startsWith("file:///")) { return {}; }
    return QByteArray::fromPercentEncoding(encoded.mid(7)).toStdString();
}

}  // namespace

NautilusPreviewer::NautilusPreviewer(std::optional<SpaceKey> key) : key_(std::move(key)) {
    clock_.start();
    looks_.setInterval(int(1000 * HeldSpace::lookSeconds));
    connect(&looks_, &QTimer::timeout, this, [this] {
        if (!held_.look(seconds(), key_->isDown())) { looks_.stop(); }
    });
}

void NautilusPreviewer::start(Heard heard) {
    heard_ = std::move(heard);
    auto connection = QDBusConnection::sessionBus();
    connection.registerVirtualObject(objectPath, this);
    connection.connect(bus, {}, bus, QStringLiteral("NameAcquired"), this, SLOT(acquired(QString)));
    connection.connect(bus, {}, bus, QStringLiteral("NameLost"), this, SLOT(lost(QString)));
}

void NautilusPreviewer::setOffered(bool offered) {
    if (offered == isOffered_) { return; }
    isOffered_ = offered;
    if (isPassing_) { return; }
    offered ? request() : release();
}

// Without flags the bus gives us the name later if another one has it now.
void NautilusPreviewer::request() {
    auto call = QDBusMessage::createMethodCall(bus, QStringLiteral("/org/freedesktop/DBus"), bus,
                                               QStringLiteral("RequestName"));
    call.setArguments({previewer, 0U});
    QDBusConnection::sessionBus().asyncCall(call);
}

void NautilusPreviewer::release() {
    auto call = QDBusMessage::createMethodCall(bus, QStringLiteral("/org/freedesktop/DBus"), bus,
                                               QStringLiteral("ReleaseName"));
    call.setArguments({previewer});
    QDBusConnection::sessionBus().asyncCall(call);
}

void NautilusPreviewer::acquired(const QString& name) {
    if (name == previewer) { setOwned(true); }
}

void NautilusPreviewer::lost(const QString& name) {
    if (name == previewer) { setOwned(false); }
}

void NautilusPreviewer::setOwned(bool owned) {
    if (owned == isOwned_) { return; }
    isOwned_ = owned;
    if (heard_.ownership) { heard_.ownership(); }
}

bool NautilusPreviewer::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    const QString member = message.member();
    if (member == QLatin1String("ShowFile")) {
        show(message);
        connection.send(message.createReply());
    } else if (member == QLatin1String("Close")) {
        connection.send(message.createReply());
    } else if (member == QLatin1String("Get")) {
        const bool isVisible = message.arguments().value(1).toString() == QLatin1String("Visible");
        const QVariant value = isVisible ? QVariant(false) : QVariant(QString());
        connection.send(message.createReply(QVariant::fromValue(QDBusVariant(value))));
    } else if (member == QLatin1String("GetAll")) {
        const QVariantMap all{{QStringLiteral("Visible"), false}, {QStringLiteral("ParentHandle"), QString()}};
        connection.send(message.createReply(QVariant::fromValue(all)));
    } else {
        return false;
    }
    return true;
}

QString NautilusPreviewer::introspect(const QString&) const {
    return QStringLiteral(
        "<interface name='org.gnome.NautilusPreviewer2'><method name='ShowFile'><arg type='s' direction='in'/>"
        "<arg type='s' direction='in'/><arg type='b' direction='in'/></method><method name='Close'/>"
        "<property name='Visible' type='b' access='read'/><property name='ParentHandle' type='s' access='read'/>"
        "</interface>");
}

void NautilusPreviewer::show(const QDBusMessage& message) {
    const auto file = pathOf(message.arguments().value(0).toString());
    const bool repeat = isRepeat();
    if (file.empty() || !heard_.show || !heard_.show(file, repeat)) { passOn(message); }
}

bool NautilusPreviewer::isRepeat() {
    if (!key_) { return clock_.restart() < repeatPeriodMs; }
    if (!looks_.isActive()) { looks_.start(); }
    return held_.isRepeat(seconds(), key_->isDown(), key_->repeatDelay());
}

double NautilusPreviewer::seconds() const {
    return double(clock_.nsecsElapsed()) / 1e9;
}

// The name is let go before the request is sent again, so that the bus starts its usual owner.
void NautilusPreviewer::passOn(const QDBusMessage& message) {
    if (isPassing_) { return; }
    isPassing_ = true;
    release();
    auto call = QDBusMessage::createMethodCall(previewer, objectPath, showInterface, message.member());
    call.setArguments(message.arguments());
    auto* watcher = new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(call, passTimeoutMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        isPassing_ = false;
        if (isOffered_) { request(); }
    });
}

}  // namespace brindlehum
