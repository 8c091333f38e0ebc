// PlayerModel: the audition player. It owns its parts and wires them: the loaded sound, the transport, the listening
// setup, the drag out, the message and the meter.
#pragma once

#include <QObject>
#include <filesystem>
#include <optional>
#include <string>

#include "mix/engine/engine_seat.h"
#include "mix/player/drag_out.h"
#include "mix/player/listening_setup.h"
#include "mix/player/loaded_sound.h"
#include "mix/player/output_meter.h"
#include "mix/player/player_message.h"
#include "mix/player/transport.h"
#include "mix/player/upmix_compare.h"
#include "mix/player/upmix_levels.h"
#include "mix/player/upmix_tuning.h"
#include "platform/disk_work.h"

namespace brindlehum {

// Main thread. Views take the parts that they show.
class PlayerModel : public QObject {
    Q_OBJECT
public:
    // `pool` reads waveforms.
    PlayerModel(PlaybackEngine& engine, SettingsStore& settings, MainLoop& loop, WorkerPool& pool,
                Transport::OpenSource open = Transport::openFile);

    LoadedSound& sound() { return sound_; }
    Transport& transport() { return transport_; }
    ListeningSetup& listening() { return listening_; }
    UpmixTuning& upmix() { return upmix_; }
    UpmixCompare& compare() { return compare_; }
    UpmixLevels& upmixLevels() { return upmixLevels_; }
    DragOut& dragOut() { return dragOut_; }
    PlayerMessage& message() { return message_; }
    OutputMeter& meter() { return meter_; }
    FormatOverrides& formats() { return formats_; }

    // The calls that the application itself makes; the parts document each.
    void load(const std::filesystem::path& path, bool autoPlay, AskedBy by = AskedBy::anyone) {
        sound_.load(path, autoPlay, by);
    }
    bool isPlaying() const { return transport_.isPlaying(); }
    void togglePlay() { transport_.togglePlay(); }
    void play(std::optional<int64_t> from) { transport_.play(from); }
    void stopAndReturn() { transport_.stopAndReturn(); }
    void profileChanged() { transport_.profileChanged(); }
    void notify(std::string text) { message_.notify(std::move(text)); }

    // The queue on which files are opened and streams prefilled, one after another; tests drain it.
    DiskWork& loader() { return loader_; }

Q_SIGNALS:
    void changed();  // a part has changed

private:
    void wire();

    PlayerMessage message_;
    EngineSeat seat_;
    FormatOverrides formats_;
    LoadedSound sound_;
    ListeningSetup listening_;
    Transport transport_;
    UpmixTuning upmix_;
    UpmixCompare compare_;
    UpmixLevels upmixLevels_;
    DragOut dragOut_;
    OutputMeter meter_;
    DiskWork loader_;  // last member, so that its work ends before the parts that it uses are destroyed
};

}  // namespace brindlehum
