// PlayerModel: the audition player, the observable state behind the player surface and the control port.
#pragma once

#include <QObject>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "audio/probe/audio_file_info.h"
#include "audio/wave/waveform.h"
#include "mix/engine/playback_engine.h"
#include "mix/player/drag_export.h"
#include "platform/main_loop.h"
#include "platform/task_queues.h"
#include "settings/settings_store.h"
#include "spatial/ambisonics.h"
#include "spatial/listen_mode.h"

namespace brindlehum {

// Half-open range of source frames.
struct FrameRange {
    int64_t lower = 0;
    int64_t upper = 0;
    bool contains(int64_t frame) const { return frame >= lower && frame < upper; }
    int64_t length() const { return upper - lower; }
    bool operator==(const FrameRange&) const = default;
};

// The playhead on its own, so that 30 updates a second wake nobody else.
class PlayheadModel : public QObject {
    Q_OBJECT
public:
    double frame() const { return frame_; }
    void setFrame(double frame);

Q_SIGNALS:
    void frameChanged(double frame);

private:
    double frame_ = 0;  // source frames
};

// Main thread. File work runs on the serial queue "Brindlehum.loader"; what comes back is checked against two
// generation counters, so that a newer intent always wins.
class PlayerModel : public QObject {
    Q_OBJECT
public:
    // `pool` carries the overview work.
    PlayerModel(PlaybackEngine& engine, SettingsStore& settings, MainLoop& loop, WorkerPool& pool);
    ~PlayerModel() override;

    // --- State; every change is announced by changed().
    const std::optional<AudioFileInfo>& info() const { return info_; }
    WaveformPtr waveform() const { return waveform_; }
    bool isPlaying() const { return isPlaying_; }
    const std::optional<FrameRange>& selection() const { return selection_; }
    bool loop() const { return loop_; }
    const std::optional<SourceFormat>& formatOverride() const { return formatOverride_; }
    ListenMode listen() const { return listen_; }
    const Rotation& rotation() const { return rotation_; }
    DragExport dragExport() const { return dragExport_; }
    const UpmixSettings& upmix() const { return upmix_; }
    double volumeDB() const { return volumeDB_; }
    const std::optional<std::string>& message() const { return message_; }
    bool messageIsProblem() const { return messageIsProblem_; }  // else a notice of something that goes well
    int64_t cueFrame() const { return cueFrame_; }
    PlayheadModel& playhead() { return playhead_; }
    SettingsStore& settings() { return settings_; }
    PlaybackEngine& engine() { return engine_; }

    // --- Derived.
    std::optional<SourceFormat> source() const;  // the override, else what was detected
    int64_t currentFrame() const { return int64_t(playhead_.frame()); }
    bool canUpmix() const;
    std::vector<std::string> laneLabels() const;
    std::vector<DragExport> dragOptions() const;

    // --- Setters with their effects on a running stream.
    void setLoop(bool loop);
    void setFormatOverride(std::optional<SourceFormat> format);
    void setListen(ListenMode mode);
    void setRotation(const Rotation& rotation);
    void setDragExport(DragExport mode);
    void setUpmix(const UpmixSettings& upmix);
    void setVolumeDB(double db);  // -60 and below is silence

    // --- Intents.
    void load(const std::filesystem::path& url, bool autoPlay);
    void togglePlay();
    void play(std::optional<int64_t> from);
    void seek(int64_t frame);
    void select(std::optional<FrameRange> range);
    void clearSelection();
    // Stops and puts the playhead back to the selection's start, or to the cue.
    void stopAndReturn();
    void selectProfile(const UUID& id);
    // To be called when the active profile or what it holds has changed.
    void profileChanged();
    // The file to hand over in a drag; none (and a message) when it can't be made.
    std::optional<std::filesystem::path> exportForDrag(bool selectionOnly);

    // "m:ss.mmm"; "0:00.000" for a negative or non-finite value.
    static std::string time(double seconds);

    // A notice of work that goes on elsewhere.
    void notify(std::string message);

    // Called before a start, so that other players give way.
    std::function<void()> onWillPlay;

    // Where files are opened and streams prefilled; tests drain it.
    SerialQueue& queue() { return queue_; }

Q_SIGNALS:
    void changed();

private:
    void didLoad(AudioFileInfo info, bool autoPlay);
    void loadFailed(const std::filesystem::path& url);
    void loadWaveform();
    void cancelWaveform();
    void startStream(int64_t start, int64_t end, int64_t low);
    void streamReady(std::shared_ptr<StreamReader> reader, int64_t start, double rate);
    void stopPlayback();
    void returnPlayhead();
    void tick();
    MixConfig makeConfig(const OutputProfile& profile) const;
    void publishConfig();
    void applyConfig();
    void sourceChanged();
    void deviceChanged();
    // The frame from which a playing or starting stream goes on; none when stopped.
    std::optional<int64_t> resumeFrame() const;
    void fail(std::string message);
    void checkDragExport();

    PlaybackEngine& engine_;
    SettingsStore& settings_;
    MainLoop& loopSeam_;
    WorkerPool& pool_;
    PlayheadModel playhead_;
    std::optional<AudioFileInfo> info_;
    WaveformPtr waveform_;
    bool isPlaying_ = false;
    std::optional<FrameRange> selection_;
    bool loop_ = false;
    std::optional<SourceFormat> formatOverride_;
    ListenMode listen_ = ListenMode::normal;
    Rotation rotation_;
    DragExport dragExport_ = DragExport::original;
    UpmixSettings upmix_;
    double volumeDB_ = 0;
    std::optional<std::string> message_;
    bool messageIsProblem_ = false;
    int64_t cueFrame_ = 0;             // where stop returns to
    std::optional<int64_t> starting_;  // a start is under way on the queue, from this frame
    int64_t loadGen_ = 0;              // counts loads: the result of an older one is dropped
    int64_t playGen_ = 0;              // counts starts and stops, likewise
    int64_t profileGen_ = 0;           // counts profileChanged()
    std::shared_ptr<WaveformLoader> waveLoader_;
    TimerHandle timer_;
    SerialQueue queue_{"Brindlehum.loader"};
};

}  // namespace brindlehum
