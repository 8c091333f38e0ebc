// ListeningSetup: how the user listens, and the mix that follows from it.
#pragma once

#include <QObject>

#include "mix/engine/engine_seat.h"
#include "mix/player/listening_mix.h"
#include "mix/player/loaded_sound.h"
#include "mix/player/player_message.h"
#include "settings/settings_store.h"

namespace brindlehum {

// What becomes of an upmix of the loaded sound.
enum class UpmixState : uint8_t {
    impossible,  // it would fill no speaker, or the source is too wide
    off,
    on,
    unheard,  // chosen, but without an HRTF set headphones play the stereo fold-down
};

// Main thread. A change is heard at once, and only in the player's own sound: publishing needs the taken seat.
class ListeningSetup : public QObject {
    Q_OBJECT
public:
    static constexpr double silentDB = -60;  // this volume and below is silence

    ListeningSetup(EngineSeat& seat, SettingsStore& settings, MainLoop& loop, const LoadedSound& sound,
                   PlayerMessage& message);

    ListenMode listen() const { return listen_; }
    const Rotation& rotation() const { return rotation_; }
    const UpmixSettings& upmix() const { return upmix_; }
    double volumeDB() const { return volumeDB_; }
    const OutputProfile& profile() const { return settings_.activeProfile(); }
    bool monoToCenter() const { return settings_.value().monoToCenter; }
    // The speakers that an upmix of the loaded sound plays on; none when it would fill none.
    std::optional<SpeakerList> upmixRoom() const;
    UpmixState upmixState() const;
    // The device that the active profile plays on, or would; none when the machine has none.
    std::optional<AudioOutputDevice> device() const;
    // While no profile has ever been chosen: chooses the one that fits the device, once there is a sound server.
    void chooseFirstProfile();
    const AudioDevices& devices() const { return seat_.engine().devices(); }
    bool isDeviceOpen() const { return seat_.engine().isConfigured(); }

    void setListen(ListenMode mode);
    void setRotation(const Rotation& rotation);
    // Heard, stored in the settings and announced once the main loop comes round, so that a slider's many values make
    // one plan a turn. Ends a comparison.
    void setUpmix(const UpmixSettings& upmix);
    const std::optional<UpmixComparison>& comparison() const { return comparison_; }
    void setComparison(const std::optional<UpmixComparison>& comparison);
    void setVolumeDB(double db);         // of everything that the engine plays; NaN is ignored
    void selectProfile(const UUID& id);  // stored in the settings

    // Returns none without a sound.
    std::optional<ListeningSnapshot> snapshot() const;
    // Publishes the mix of the loaded sound, if there is a sound and a device. Shows a message when headphones get the
    // fold-down.
    void publish();

Q_SIGNALS:
    void changed();
    void profileSelected();
    void outputsChanged();  // the devices, the default one or the sound server's state

private:
    void settleUpmix();

    EngineSeat& seat_;
    SettingsStore& settings_;
    MainLoop& loop_;
    const LoadedSound& sound_;
    PlayerMessage& message_;
    ListenMode listen_ = ListenMode::normal;
    Rotation rotation_;
    UpmixSettings upmix_;
    TimerHandle settling_;  // while a new upmix waits for the loop
    std::optional<UpmixComparison> comparison_;
    double volumeDB_ = 0;
    std::shared_ptr<void> watching_;
};

}  // namespace brindlehum
