// Transport: plays the loaded sound and keeps track of the position.
#pragma once

#include <QObject>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "mix/engine/engine_seat.h"
#include "mix/player/device_notice.h"
#include "mix/player/listening_setup.h"
#include "mix/player/loaded_sound.h"
#include "mix/player/play_span.h"
#include "mix/player/player_message.h"
#include "mix/player/playhead_model.h"
#include "platform/disk_work.h"

namespace brindlehum {

// Main thread. A start opens its stream on the loader's queue; any later start or stop cancels it.
class Transport : public QObject {
    Q_OBJECT
public:
    // Opens a sound. Called on the loader's queue; throws errors whose text is shown to the user. `stop` may be called
    // at any time: once it returns true, the sound is no longer wanted and its reads should fail.
    using OpenSource = std::function<std::unique_ptr<FrameSource>(const std::filesystem::path& path,
                                                                  const std::function<bool()>& stop)>;
    static std::unique_ptr<FrameSource> openFile(const std::filesystem::path& path, const std::function<bool()>& stop);

    Transport(EngineSeat& seat, DiskWork& loader, MainLoop& loop, LoadedSound& sound, ListeningSetup& listening,
              PlayerMessage& message, OpenSource open = openFile);

    bool isPlaying() const { return isPlaying_; }
    const std::optional<FrameRange>& selection() const { return selection_; }
    bool loop() const { return loops_; }
    int64_t cueFrame() const { return cueFrame_; }  // playing starts here, and a stop returns here
    PlayheadModel& playhead() { return playhead_; }
    int64_t currentFrame() const { return playhead_.wholeFrame(); }

    // Takes the engine's seat and plays from the frame, or from the cue without one.
    void play(std::optional<int64_t> from);
    // Stops and puts the playhead back to the selection's start, or to the cue.
    void stopAndReturn();
    void togglePlay();
    // Moves the cue and plays from there; clears a selection that doesn't contain the frame.
    void seek(int64_t frame);
    // Selects and plays the range; a range of 10 ms or less only clears the selection.
    void select(std::optional<FrameRange> range);
    void clearSelection();
    void setLoop(bool loop);

    // Stops and forgets cue and selection, before another sound is loaded.
    void reset();
    // Another version of the file has come to its path: plays it on from the same position if the old one plays.
    void fileReplaced();
    // Called when the active profile, or another setting that the sound is played through, may have changed: if one
    // has, restarts a running stream with the new settings.
    void profileChanged();
    // Called by the seat.
    void deviceChanged();
    void seatLost();

Q_SIGNALS:
    void changed();

private:
    // The settings that a stream is opened for.
    struct Route {
        OutputProfile profile;
        bool monoToCenter = true;
        bool operator==(const Route&) const = default;
    };
    Route routeNow() const { return {listening_.profile(), listening_.monoToCenter()}; }
    bool openDevice(bool force, const std::string& failurePrefix = "");
    void startStream(const PlaySpan& span);
    void streamReady(std::shared_ptr<StreamReader> reader, int64_t start, double rate);
    // The frame from which a playing or starting stream would resume; none at rest.
    std::optional<int64_t> resumeFrame() const;
    void rest();
    void stop();
    void returnPlayhead();
    void tick();

    EngineSeat& seat_;
    DiskWork& loader_;
    MainLoop& mainLoop_;
    LoadedSound& sound_;
    ListeningSetup& listening_;
    PlayerMessage& message_;
    DeviceNotice notice_;
    OpenSource open_;
    PlayheadModel playhead_;
    bool isPlaying_ = false;
    std::optional<FrameRange> selection_;
    bool loops_ = false;
    int64_t cueFrame_ = 0;
    std::optional<int64_t> starting_;           // the first frame of a stream that is being opened
    Route route_;                               // the settings in use
    std::weak_ptr<const StreamReader> stream_;  // what plays; the engine owns it
    TimerHandle timer_;
    Background::Line starts_;
};

}  // namespace brindlehum
