// Files on the session bus leads to its process, and that to its windows on the accessibility bus.
#include "wayland_front.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace brindlehum {
namespace {

const auto files = QStringLiteral("org.gnome.Nautilus");
const auto busName = QStringLiteral("org.freedesktop.DBus");

constexpr int lookAgainMs = 500;  // for a program that was just started
constexpr int maxLooks = 10;

QDBusPendingCall askBus(const char* method, const QString& of) {
    auto call = QDBusMessage::createMethodCall(busName, QStringLiteral("/org/freedesktop/DBus"), busName,
                                               QString::fromLatin1(method));
    call.setArguments({of});
    return QDBusConnection::sessionBus().asyncCall(call);
}

}  // namespace

WaylandFront::WaylandFront()
    : service_(files, QDBusConnection::sessionBus(), QDBusServiceWatcher::WatchForOwnerChange) {
    connect(&service_, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& owner) { meet(owner); });
    again_.setSingleShot(true);
    again_.setInterval(lookAgainMs);
    connect(&again_, &QTimer::timeout, this, [this] { look(); });
    bus_.onEvent = [this](const AccessibleBus::Event& event) {
        if (event.detail != QLatin1String("active")) { return; }
        if (event.on) {
            activeFrames_.insert(event.source);
        } else {
            activeFrames_.erase(event.source);
        }
        publish();
    };
    auto* watcher = new QDBusPendingCallWatcher(askBus("GetNameOwner", files), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
        watcher->deleteLater();
        const QDBusPendingReply<QString> owner = *watcher;
        if (owner.isValid() && program_.busName.empty()) { meet(owner.value()); }
    });
}

void WaylandFront::meet(const QString& owner) {
    again_.stop();
    looks_ = 0;
    bus_.hear({}, {});
    numbers_.clear();
    activeFrames_.clear();
    program_ = {};
    publish();
    if (owner.isEmpty()) { return; }
    program_.className = files.toStdString();
    program_.busName = owner.toStdString();
    auto* watcher = new QDBusPendingCallWatcher(askBus("GetConnectionUnixProcessID", owner), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher, owner] {
        watcher->deleteLater();
        const QDBusPendingReply<uint> pid = *watcher;
        if (!pid.isValid() || program_.busName != owner.toStdString()) { return; }
        program_.pid = pid.value();
        look();
    });
}

// Its name is on the session bus before its windows are on the other.
void WaylandFront::look() {
    bus_.connectSoon();
    bus_.find(program_.pid, [this, owner = program_.busName](const std::optional<AccessibleRef>& program) {
        if (owner != program_.busName) { return; }
        if (program) { return readFrames(*program); }
        if (++looks_ < maxLooks) { again_.start(); }
    });
}

void WaylandFront::readFrames(const AccessibleRef& program) {
    bus_.hear(program.bus, {QStringLiteral("object:state-changed:active")});
    bus_.ask({AccessibleCall::children(program)}, [this](const AccessibleAnswers& children) {
        const auto frames = children.front().refs();
        std::vector<AccessibleCall> calls;
        for (const AccessibleRef& frame : frames) { calls.push_back(AccessibleCall::state(frame)); }
        bus_.ask(calls, [this, frames](const AccessibleAnswers& states) {
            for (size_t i = 0; i < frames.size(); ++i) {
                if (states[i].has(AccessibleState::active)) { activeFrames_.insert(frames[i]); }
            }
            publish();
        });
    });
}

void WaylandFront::publish() {
    Active now;
    if (!activeFrames_.empty()) {
        now = program_;
        now.id = numbers_.try_emplace(*activeFrames_.begin(), uint32_t(numbers_.size() + 1)).first->second;
    }
    if (now == active_) { return; }
    active_ = now;
    if (onActive) { onActive(); }
}

}  // namespace brindlehum
