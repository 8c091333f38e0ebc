// NautilusPreviewer: the D-Bus name that Nautilus asks to show a file when Space is pressed.
#pragma once

#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QTimer>
#include <functional>

#include "held_space.h"
#include "platform/file_previewer.h"

namespace brindlehum {

// Main thread. Owns org.gnome.NautilusPreviewer on the session bus exactly while it is offered, so that the desktop's
// own previewer serves everything else. Requests that aren't ours are passed on to that.
class NautilusPreviewer : public QDBusVirtualObject, public FilePreviewer {
    Q_OBJECT
public:
    // `isSpaceDown` tells a held key from a second press; without it, requests in close succession count as repeats.
    explicit NautilusPreviewer(std::function<bool()> isSpaceDown);
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

    std::function<bool()> isSpaceDown_;
    Heard heard_;
    bool isOffered_ = false;
    bool isOwned_ = false;
    bool isPassing_ = false;  // the desktop's previewer is being started
    HeldSpace held_;
    QTimer looks_;
    QElapsedTimer clock_;  // of `held_`; without `isSpaceDown_` since the last request
};

}  // namespace brindlehum
