// NautilusPreviewer: the D-Bus name that Nautilus asks to show a file when Space is pressed.
#pragma once

#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QTimer>
#include <functional>
#include <optional>

#include "held_space.h"
#include "platform/file_previewer.h"

namespace brindlehum {

// Main thread. Owns org.gnome.NautilusPreviewer on the session bus exactly while it is offered, so that the desktop's
// own previewer serves everything else. Requests that aren't ours are passed on to that.
class NautilusPreviewer : public QDBusVirtualObject, public FilePreviewer {
    Q_OBJECT
public:
    // What tells a held key from a second press.
    struct SpaceKey {
        std::function<bool()> isDown;
        std::function<double()> repeatDelay;  // seconds until a held key repeats
    };
    // Without a key, requests in close succession count as repeats.
    explicit NautilusPreviewer(std::optional<SpaceKey> key);
    void start(Heard heard) override;
    void setOffered(bool offered) override;
    bool isOwned() const override { return isOwned_; }

    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;
    QString introspect(const QString& path) const override;

private Q_SLOTS:
    void acquired(const QString& name);
    void lost(const QString& name);

private:
    void request();
    void release();
    void setOwned(bool owned);
    void show(const QDBusMessage& message);
    void passOn(const QDBusMessage& message);
    bool isRepeat();
    double seconds() const;

    std::optional<SpaceKey> key_;
    Heard heard_;
    bool isOffered_ = false;
    bool isOwned_ = false;
    bool isPassing_ = false;  // the desktop's previewer is being started
    HeldSpace held_;
    QTimer looks_;
    QElapsedTimer clock_;  // of `held_`; without `key_` since the last request
};

}  // namespace brindlehum
