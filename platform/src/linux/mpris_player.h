// MprisPlayer: the object on the bus, with its two interfaces.
#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusObjectPath>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include "platform/media_session.h"

namespace brindlehum {

class MprisPlayer : public QObject {
    Q_OBJECT
public:
    explicit MprisPlayer(MediaSession::Wishes wishes);
    ~MprisPlayer() override;
    void show(const MediaStatus& status);
    void jumped();

    const MediaSession::Wishes& wishes() const { return wishes_; }
    const MediaStatus& status() const { return status_; }
    QVariantMap metadata() const;
    QDBusObjectPath track() const;
    QString playback() const;

private:
    MediaSession::Wishes wishes_;
    MediaStatus status_;
    QString service_;
    int track_ = 0;  // another number for another title
};

// The names of slots and properties are those of the interface.
class MprisRoot : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2")
    Q_PROPERTY(bool CanQuit READ yes)
    Q_PROPERTY(bool CanRaise READ yes)
    Q_PROPERTY(bool HasTrackList READ no)
    Q_PROPERTY(QString Identity READ identity)
    Q_PROPERTY(QString DesktopEntry READ desktopEntry)
    Q_PROPERTY(QStringList SupportedUriSchemes READ none)
    Q_PROPERTY(QStringList SupportedMimeTypes READ none)
public:
    explicit MprisRoot(MprisPlayer& player) : QDBusAbstractAdaptor(&player), player_(player) {}
    bool yes() const { return true; }
    bool no() const { return false; }
    QString identity() const { return QStringLiteral("Brindlehum"); }
    QString desktopEntry() const { return QStringLiteral("brindlehum"); }
    QStringList none() const { return {}; }
public Q_SLOTS:
    void Raise() { player_.wishes().raise(); }
    void Quit() { player_.wishes().quit(); }

private:
    MprisPlayer& player_;
};

class MprisControls : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.mpris.MediaPlayer2.Player")
    Q_PROPERTY(QString PlaybackStatus READ playback)
    Q_PROPERTY(QString LoopStatus READ loopStatus WRITE setLoopStatus)
    Q_PROPERTY(double Rate READ rate WRITE setRate)
    Q_PROPERTY(double MinimumRate READ rate)
    Q_PROPERTY(double MaximumRate READ rate)
    Q_PROPERTY(QVariantMap Metadata READ metadata)
    Q_PROPERTY(double Volume READ volume WRITE setVolume)
    Q_PROPERTY(qlonglong Position READ position)
    Q_PROPERTY(bool CanGoNext READ no)
    Q_PROPERTY(bool CanGoPrevious READ no)
    Q_PROPERTY(bool CanPlay READ isLoaded)
    Q_PROPERTY(bool CanPause READ isLoaded)
    Q_PROPERTY(bool CanSeek READ isLoaded)
    Q_PROPERTY(bool CanControl READ yes)
public:
    explicit MprisControls(MprisPlayer& player) : QDBusAbstractAdaptor(&player), player_(player) {}
    QString playback() const { return player_.playback(); }
    QString loopStatus() const;
    void setLoopStatus(const QString& status);
    double rate() const { return 1; }
    void setRate(double /*rate*/) {}  // there is one
    QVariantMap metadata() const { return player_.metadata(); }
    double volume() const { return player_.status().volume; }
    void setVolume(double volume) { player_.wishes().setVolume(volume); }
    qlonglong position() const;  // microseconds, as all times here
    bool isLoaded() const { return !player_.status().title.empty(); }
    bool yes() const { return true; }
    bool no() const { return false; }
public Q_SLOTS:
    void Next() {}
    void Previous() {}
    void Pause() { player_.wishes().pause(); }
    void PlayPause() { player_.wishes().playPause(); }
    void Stop() { player_.wishes().stop(); }
    void Play() { player_.wishes().play(); }
    void Seek(qlonglong offset);
    void SetPosition(const QDBusObjectPath& track, qlonglong position);
    void OpenUri(const QString& /*uri*/) {}  // no scheme is announced
Q_SIGNALS:
    void Seeked(qlonglong position);

private:
    MprisPlayer& player_;
};

}  // namespace brindlehum
