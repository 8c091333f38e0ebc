// EditorTransport: plays the editor's document, its seams and its planned edits from memory.
#pragma once

#include <QObject>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "audio/stream/memory_source.h"
#include "editor/document/document_model.h"
#include "editor/music/music_model.h"
#include "editor/playback/editor_mix.h"
#include "mix/engine/engine_seat.h"
#include "mix/player/device_notice.h"
#include "mix/player/play_span.h"
#include "mix/player/playhead_model.h"
#include "platform/background.h"

namespace brindlehum {

// Main thread. Takes the engine's seat to play, and is silent when another takes it.
class EditorTransport : public QObject {
    Q_OBJECT
public:
    static constexpr double preRollSeconds = 2;

    EditorTransport(PlaybackEngine& engine, SettingsStore& settings, DocumentModel& document, MusicModel& music,
                    MainLoop& loop, PlayerMessage& message);

    bool isPlaying() const { return isPlaying_; }
    PlayheadModel& playhead() { return playhead_; }
    // The playhead is a place in the document, which it isn't while a planned edit or an effect is heard.
    bool followsDocument() const { return followsDocument_; }

    bool loops() const { return loops_; }
    bool preRoll() const { return preRoll_; }
    bool click() const { return click_; }
    const LaneSwitches& lanes() const { return lanes_; }
    void setLoops(bool loops);      // restarts what plays, from where it is, as the click does
    void setPreRoll(bool preRoll);  // before a start without an explicit position
    void setClick(bool click);
    void setSolo(int channel, bool on);  // heard at once
    void setMute(int channel, bool on);

    // From the frame; without one from the selection's start, else from the cursor.
    void play(std::optional<int64_t> from = {});
    void stop();  // and puts the playhead back to the cursor
    void toggle();
    // Hears a planned edit as it would be written.
    void audition(const EditPlan& plan);
    // From two bars before the pinned loop's end over its wrap, round and round.
    void auditionLoopPoint();
    // Hears any sound at the document's rate and channels.
    void audition(Sound sound, bool loop = false);
    // Hears a file beside the document, such as a take that was made for it.
    void audition(const std::filesystem::path& file);
    // The name of the plan that is heard, or the file's.
    std::optional<std::string> auditioned() const { return auditioned_; }

    // The settings that a sound is played through may have changed.
    void profileChanged();

    Background& queue() { return queue_; }  // tests drain it

Q_SIGNALS:
    void changed();

private:
    struct Start {
        Sound sound;
        PlaySpan span;
        bool loop = false;
        bool followsDocument = true;
        std::optional<std::vector<Click>> clicks;
    };
    std::optional<std::vector<Click>> clicks() const;
    void start(const Start& given);
    void ready(std::shared_ptr<StreamReader> reader, const Start& start, double rate);
    bool openDevice(bool force);
    void publish();
    void deviceChanged();
    void restart();
    void rest();
    void tick();
    void follow();

    EngineSeat seat_;
    SettingsStore& settings_;
    DocumentModel& document_;
    MusicModel& music_;
    MainLoop& loop_;
    PlayerMessage& message_;
    DeviceNotice notice_;
    PlayheadModel playhead_;
    bool isPlaying_ = false;
    std::optional<int64_t> starting_;  // where in the document, until it plays
    bool followsDocument_ = true;
    bool hasMetronome_ = false;  // of what plays
    bool loops_ = false;
    bool preRoll_ = false;
    bool click_ = false;
    LaneSwitches lanes_;
    std::optional<std::string> auditioned_;
    TimerHandle timer_;
    Background::Line starts_;
    Background queue_;  // last member, so that its work ends first
};

}  // namespace brindlehum
