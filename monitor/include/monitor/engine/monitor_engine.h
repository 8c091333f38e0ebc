// MonitorEngine: listens to a bus and plays it in a room, as the monitor's state says.
#pragma once

#include <QObject>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "mix/engine/config_publisher.h"
#include "monitor/engine/bus_loudness.h"
#include "monitor/engine/monitor_choice.h"
#include "monitor/engine/monitor_inserts.h"
#include "monitor/engine/plugin_list.h"
#include "monitor/render/matrix_unit.h"
#include "monitor/state/monitor_state.h"
#include "platform/duplex_audio.h"
#include "platform/main_loop.h"
#include "settings/settings_store.h"

namespace brindlehum {

class RenderWatch;

// Main thread. What is set is kept under "monitor.state", "monitor.source" and "monitor.profile". Once started, it goes
// on until it is stopped: what is unplugged, and a server that goes, only makes it wait.
class MonitorEngine : public QObject {
    Q_OBJECT
public:
    // `audio`, `loop` and `settings` must outlive this object. Starts nothing.
    MonitorEngine(AudioSystem& audio, SettingsStore& settings, MainLoop& loop,
                  ConfigPublisher::StageMaker makeStage = ConfigPublisher::sharedSetStage);
    ~MonitorEngine() override;

    const MonitorState& state() const { return state_; }
    // Heard within a block; never restarts anything but our bus, whose channels follow the state's source.
    void setState(const MonitorState& state);
    // The uid of the input that is listened to. A change while it runs moves the monitor there.
    const std::optional<std::string>& sourceUID() const { return sourceUID_; }
    void setSourceUID(const std::optional<std::string>& uid);
    // The profile that it plays on; none means the active one of the settings.
    const std::optional<UUID>& profileID() const { return profileID_; }
    void setProfileID(const std::optional<UUID>& id);
    const OutputProfile& profile() const;
    // The profile that it is compared with; none for no comparison, and null when it isn't there any more. While there
    // is one, the louder of the two is lowered to the level of the other.
    void setOtherProfileID(const std::optional<UUID>& id);
    const OutputProfile* otherProfile() const;
    // Exchanges the two. At once between profiles of one device; else it falls silent and rises on the other.
    void switchProfiles();
    // dB, 0 or below, by which the profile in use is lowered for the comparison.
    double matchDB() const { return matchDB_; }

    // What can be listened to. The first question makes our own bus.
    std::vector<AudioInputDevice> inputs();

    // Starts, or says in message() why it can't.
    void start();
    // Falls silent and closes the devices.
    void stop();
    bool running() const { return stream_ != nullptr; }
    // Started, but waiting for a device or the server to come back.
    bool waiting() const { return wanted_ && !running(); }
    // Why it doesn't run, for the user; empty when all is well.
    const std::string& message() const { return message_; }

    // The effects behind the matrix, and those that can be added. A chain that isn't empty is heard from the start on,
    // unless it fails: then the monitor plays without it, and inserts().message() says why.
    MonitorInserts& inserts() { return inserts_; }
    PluginList& plugins() { return plugins_; }
    // As PlaybackEngine::renewBinaural.
    void renewBinaural() {
        if (publisher_) { publisher_->renewStage(); }
    }
    UUID addInsert(const PluginInfo& plugin) { return inserts_.add(plugin); }
    void removeInsert(const UUID& id) { inserts_.remove(id); }
    void toggleBypass(const UUID& id) { inserts_.toggleBypass(id); }
    void showUI(const UUID& id) { Q_EMIT inserts_.uiWanted(QString::fromStdString(id.string())); }

    bool upmixAvailable() const;
    double sampleRate() const { return stream_ ? stream_->sampleRate() : 0; }  // Hz; 0 while stopped
    int inputChannels() const { return inputChannels_; }
    int deviceChannels() const { return deviceChannels_; }
    // Seconds from the source's ports to the output's: of an upmix, and with the sound server's block; 0 while stopped.
    double addedLatency() const;
    double latency() const;
    // Blocks that the output didn't get from us in time, since the start.
    uint64_t dropouts() const;
    // Of the bus, before anything that is set here.
    BusLoudness& loudness() { return loudness_; }
    const BusLoudness& loudness() const { return loudness_; }
    // Levels for meters, in the order of the bus and of the profile's speakers, since the last take: 1 is full scale.
    std::vector<float> takeBusPeaks();
    std::vector<float> takeSpeakerPeaks();

Q_SIGNALS:
    void changed();  // state, source, profile, running, message, or any setting
    void inputsChanged();

private:
    enum class Falls : uint8_t { atOnce, softly };

    void tryToOpen();
    std::string open();
    void close(Falls falls);
    void apply();
    void keepBus();
    void restartIfRunning();
    void followProfile();
    void matchLevels();
    void streamChanged();
    void routeChanged();
    void systemChanged();
    void settingsChanged();
    void say(std::string message);

    AudioSystem& audio_;
    SettingsStore& settings_;
    MainLoop& loop_;
    MonitorChoice choice_;
    MonitorState state_;
    std::optional<std::string> sourceUID_;
    std::optional<UUID> profileID_;
    std::optional<UUID> otherProfileID_;
    double matchDB_ = 0;
    ConfigPublisher::StageMaker makeStage_;
    BusLoudness loudness_;
    std::string message_;
    bool wanted_ = false;
    TimerHandle retry_;  // while waiting
    PluginList plugins_;
    MonitorInserts inserts_;
    MonitorInserts::Route route_;  // of the open stream

    std::shared_ptr<MatrixUnit> unit_;
    std::shared_ptr<RenderWatch> watch_;
    std::unique_ptr<ConfigPublisher> publisher_;
    std::shared_ptr<void> bus_;
    std::vector<std::string> busPositions_;
    std::unique_ptr<OutputStream> stream_;
    std::shared_ptr<bool> streamToken_;   // dies with the stream, so that its late notices are dropped
    OutputProfile opened_;                // the profile as last applied
    OutputProfile heard_;                 // the same on the open device
    std::vector<std::string> positions_;  // of the open device
    int inputChannels_ = 0;
    int deviceChannels_ = 0;
    uint64_t lostBefore_ = 0;  // drop-outs of streams closed since the start
    std::shared_ptr<void> watching_;
};

}  // namespace brindlehum
