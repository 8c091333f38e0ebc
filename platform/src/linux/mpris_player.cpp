// Answers the desktop, and tells it of changes.
#include "mpris_player.h"

#include <unistd.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <algorithm>
#include <cmath>

#include "platform/linux_media_session.h"

namespace brindlehum {
namespace {

constexpr auto objectPath = "/org/mpris/MediaPlayer2";
constexpr auto controls = "org.mpris.MediaPlayer2.Player";
constexpr double microseconds = 1e6;  // in a second

qlonglong microsecondsOf(double seconds) {
    return std::llround(seconds * microseconds);
}

}  // namespace

MprisPlayer::MprisPlayer(MediaSession::Wishes wishes)
    : wishes_(std::move(wishes)), service_(QStringLiteral("org.mpris.MediaPlayer2.brindlehum")) {
    new MprisRoot(*this);  // both belong to this object
    new MprisControls(*this);
    auto bus = QDBusConnection::sessionBus();
    bus.registerObject(objectPath, this);
    if (bus.registerService(service_)) { return; }
    service_ += ".instance" + QString::number(::getpid());  // beside another one, as the interface wants it
    bus.registerService(service_);
}

MprisPlayer::~MprisPlayer() {
    auto bus = QDBusConnection::sessionBus();
    bus.unregisterService(service_);
    bus.unregisterObject(objectPath);
}

QString MprisPlayer::playback() const {
    switch (status_.playback) {
        case MediaStatus::Playback::playing:
            return QStringLiteral("Playing");
        case MediaStatus::Playback::paused:
            return QStringLiteral("Paused");
        case MediaStatus::Playback::stopped:
            break;
    }
    return QStringLiteral("Stopped");
}

QDBusObjectPath MprisPlayer::track() const {
    if (status_.title.empty()) { return QDBusObjectPath("/org/mpris/MediaPlayer2/TrackList/NoTrack"); }
    return QDBusObjectPath("/org/brindlehum/track/" + QString::number(track_));
}

QVariantMap MprisPlayer::metadata() const {
    QVariantMap map{{"mpris:trackid", QVariant::fromValue(track())}};
    if (status_.title.empty()) { return map; }
    map.insert("mpris:length", microsecondsOf(status_.length));
    map.insert("xesam:title", QString::fromStdString(status_.title));
    return map;
}

void MprisPlayer::show(const MediaStatus& status) {
    const MediaStatus before = std::exchange(status_, status);
    QVariantMap changed;
    if (status.title != before.title || status.length != before.length) {
        ++track_;
        changed.insert("Metadata", metadata());
    }
    if (status.title.empty() != before.title.empty()) {
        for (const char* can : {"CanPlay", "CanPause", "CanSeek"}) { changed.insert(can, !status.title.empty()); }
    }
    if (status.playback != before.playback) { changed.insert("PlaybackStatus", playback()); }
    if (status.loops != before.loops) { changed.insert("LoopStatus", status.loops ? "Track" : "None"); }
    if (status.volume != before.volume) { changed.insert("Volume", status.volume); }
    if (changed.isEmpty()) { return; }
    auto signal = QDBusMessage::createSignal(objectPath, "org.freedesktop.DBus.Properties", "PropertiesChanged");
    signal << QString(controls) << changed << QStringList();
    QDBusConnection::sessionBus().send(signal);
}

void MprisPlayer::jumped() {
    Q_EMIT findChild<MprisControls*>()->Seeked(microsecondsOf(wishes_.position()));
}

QString MprisControls::loopStatus() const {
    return player_.status().loops ? QStringLiteral("Track") : QStringLiteral("None");
}

void MprisControls::setLoopStatus(const QString& status) {
    player_.wishes().setLoop(status == "Track" || status == "Playlist");
}

qlonglong MprisControls::position() const {
    return microsecondsOf(player_.wishes().position());
}

// Past the end would be the next track, which there isn't.
void MprisControls::Seek(qlonglong offset) {
    const double wanted = player_.wishes().position() + double(offset) / microseconds;
    player_.wishes().seek(std::clamp(wanted, 0.0, player_.status().length));
}

// A position outside the track, or of a track that has gone meanwhile, is ignored.
void MprisControls::SetPosition(const QDBusObjectPath& track, qlonglong position) {
    const double wanted = double(position) / microseconds;
    if (track != player_.track() || wanted < 0 || wanted > player_.status().length) { return; }
    player_.wishes().seek(wanted);
}

LinuxMediaSession::LinuxMediaSession() = default;
LinuxMediaSession::~LinuxMediaSession() = default;

void LinuxMediaSession::start(Wishes wishes) {
    if (!QDBusConnection::sessionBus().isConnected()) { return; }
    player_ = std::make_unique<MprisPlayer>(std::move(wishes));
}

void LinuxMediaSession::show(const MediaStatus& status) {
    if (player_) { player_->show(status); }
}

void LinuxMediaSession::jumped() {
    if (player_) { player_->jumped(); }
}

}  // namespace brindlehum
