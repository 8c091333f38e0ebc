// The player's state for the desktop, and the desktop's wishes to the player.
#include "app/media_controls.h"

#include <algorithm>
#include <cmath>

namespace brindlehum {
namespace {

constexpr double jumpSeconds = 0.3;   // from where playing on would have brought the playhead
constexpr double quietSeconds = 0.5;  // between two jumps that are told
constexpr double loudestDB = 6;       // as in the window

}  // namespace

MediaControls::MediaControls(MediaSession* session, PlayerModel& player, EditorTransport& editor,
                             SettingsStore& settings, MainLoop& loop)
    : session_(session), player_(player), editor_(editor), settings_(settings), loop_(loop) {}

void MediaControls::start(std::function<void()> raise, std::function<void()> quit) {
    if (!session_) { return; }
    session_->start({.play = [this] { isPlaying() ? void() : toggle(); },
                     .pause = [this] { isPlaying() ? toggle() : void(); },
                     .playPause = [this] { toggle(); },
                     .stop = [this] { stop(); },
                     .raise = std::move(raise),
                     .quit = std::move(quit),
                     .seek = [this](double seconds) { seek(seconds); },
                     .setLoop = [this](bool loops) { player_.transport().setLoop(loops); },
                     .setVolume =
                         [this](double volume) {
                             const double db = volume > 0 ? 20 * std::log10(volume) : ListeningSetup::silentDB;
                             player_.listening().setVolumeDB(std::clamp(db, ListeningSetup::silentDB, loudestDB));
                         },
                     .position = [this] { return position(); }});
    const auto tell = [this] { session_->show(status()); };
    connect(&player_, &PlayerModel::changed, this, tell);
    connect(&editor_, &EditorTransport::changed, this, tell);
    connect(&settings_, &SettingsStore::changed, this, tell);
    connect(&player_.transport().playhead(), &PlayheadModel::frameChanged, this, &MediaControls::moved);
    tell();
}

MediaStatus MediaControls::status() const {
    MediaStatus status;
    const auto& info = player_.sound().info();
    status.loops = player_.transport().loop();
    const double db = player_.listening().volumeDB();
    status.volume = db <= ListeningSetup::silentDB ? 0 : std::pow(10, db / 20);
    if (info) {
        status.title = settings_.value().mediaShowsTitle ? info->url.filename().string() : "Brindlehum";
        status.length = double(info->frames) / std::max(info->sampleRate, 1.0);
        status.playback = MediaStatus::Playback::paused;
    }
    if (isPlaying()) { status.playback = MediaStatus::Playback::playing; }
    return status;
}

void MediaControls::stop() {
    player_.stopAndReturn();
    editor_.stop();
}

void MediaControls::toggle() {
    editor_.isPlaying() ? editor_.stop() : player_.togglePlay();
}

void MediaControls::seek(double seconds) {
    const auto& info = player_.sound().info();
    if (!info) { return; }
    const auto last = double(std::max<int64_t>(info->frames - 1, 0));
    player_.transport().seek(int64_t(std::clamp(seconds * info->sampleRate, 0.0, last)));
}

double MediaControls::position() const {
    const auto& info = player_.sound().info();
    return info ? double(player_.transport().currentFrame()) / std::max(info->sampleRate, 1.0) : 0;
}

void MediaControls::moved() {
    const double now = loop_.now();
    const double at = position();
    const bool playing = player_.isPlaying();
    const double expected = seen_ + (playing && wasPlaying_ ? now - seenAt_ : 0);
    const bool jumped = std::abs(at - expected) > jumpSeconds;
    seen_ = at;
    seenAt_ = now;
    wasPlaying_ = playing;
    if (jumped) { tellJump(); }
}

// A short loop jumps many times a second.
void MediaControls::tellJump() {
    if (quiet_) {
        jumpedMeanwhile_ = true;
        return;
    }
    session_->jumped();
    quiet_ = loop_.after(quietSeconds, [this] {
        quiet_.reset();
        if (std::exchange(jumpedMeanwhile_, false)) { tellJump(); }
    });
}

}  // namespace brindlehum
