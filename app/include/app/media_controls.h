// MediaControls: keeps the desktop's media keys and the player in step.
#pragma once

#include <QObject>
#include <functional>

#include "editor/playback/editor_transport.h"
#include "mix/player/player_model.h"
#include "platform/media_session.h"
#include "settings/settings_store.h"

namespace brindlehum {

// Main thread. At rest it tells the desktop nothing; while a sound plays, only its jumps.
class MediaControls : public QObject {
    Q_OBJECT
public:
    // `session` may be null. All must outlive this object.
    MediaControls(MediaSession* session, PlayerModel& player, EditorTransport& editor, SettingsStore& settings,
                  MainLoop& loop);
    // Appears on the desktop. `raise` brings the main window up, `quit` ends the application.
    void start(std::function<void()> raise, std::function<void()> quit);

    // What the desktop is told now.
    MediaStatus status() const;

private:
    bool isPlaying() const { return player_.isPlaying() || editor_.isPlaying(); }
    void stop();
    void toggle();
    void seek(double seconds);
    double position() const;
    void moved();
    void tellJump();

    MediaSession* session_;
    PlayerModel& player_;
    EditorTransport& editor_;
    SettingsStore& settings_;
    MainLoop& loop_;
    // Where the playhead was last, and when.
    double seenAt_ = 0;
    double seen_ = 0;
    bool wasPlaying_ = false;
    TimerHandle quiet_;  // until the next jump may be told
    bool jumpedMeanwhile_ = false;
};

}  // namespace brindlehum
