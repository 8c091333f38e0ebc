// A private session bus with a desktop portal on it, which tells the preferred colours.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QProcess>

namespace brindlehum::test {

// Makes itself the session bus of this process; make it before anything asks for that one.
class DesktopBus {
public:
    DesktopBus() {
        daemon_.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
        daemon_.waitForReadyRead();
        address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
        qputenv("DBUS_SESSION_BUS_ADDRESS", address_.toUtf8());
    }
    ~DesktopBus() {
        daemon_.terminate();
        daemon_.waitForFinished();
    }
    DesktopBus(const DesktopBus&) = delete;
    DesktopBus& operator=(const DesktopBus&) = delete;
    const QString& address() const { return address_; }

private:
    QProcess daemon_;
    QString address_;
};

class FakePortal : public QDBusVirtualObject {
public:
    static constexpr const char* path = "/org/freedesktop/portal/desktop";
    static constexpr const char* interface = "org.freedesktop.portal.Settings";

    explicit FakePortal(const QString& address, uint preference)
        : connection_(QDBusConnection::connectToBus(address, "portal")), preference_(preference) {
        connection_.registerVirtualObject(path, this);
        connection_.registerService("org.freedesktop.portal.Desktop");
    }
    ~FakePortal() override { QDBusConnection::disconnectFromBus("portal"); }

    bool isReady() const { return connection_.isConnected(); }
    void prefer(uint preference) {
        preference_ = preference;
        auto signal = QDBusMessage::createSignal(path, interface, "SettingChanged");
        signal << "org.freedesktop.appearance"
               << "color-scheme" << QVariant::fromValue(QDBusVariant(preference));
        connection_.send(signal);
    }

    QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.member() != "Read") { return false; }
        const QDBusVariant value{QVariant(preference_)};
        return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(value)))));
    }

private:
    QDBusConnection connection_;
    uint preference_;
};

}  // namespace brindlehum::test
