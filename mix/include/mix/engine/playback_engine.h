// PlaybackEngine: the control half of playback. It opens the device, publishes rings and configurations to the render
// side and keeps replaced objects alive until the render side is done with them.
//
// Published objects (the ring of a StreamReader, a mn_mix_config with its own copy of the matrix, a binaural stage and
// its filters) are completed first, then their pointer is stored, and they are never changed afterwards.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "audio/stream/stream_reader.h"
#include "mix/config/mix_config.h"
#include "mix/engine/audio_devices.h"
#include "mix/engine/config_publisher.h"
#include "mix/render/render_context.h"
#include "platform/main_loop.h"

namespace brindlehum {

class EngineSeat;
class RenderWatch;

// Main thread for every call. Each owner that shares the engine uses it through its own EngineSeat.
class PlaybackEngine {
public:
    static constexpr double retirement = ConfigPublisher::retirement;
    // Seconds that the device stays warm after the last stop.
    static constexpr double idleDelay = 20.0;
    // The most seconds that a device gets to fade out before another one is opened.
    static constexpr double maxFadeOut = 0.1;

    using StageMaker = ConfigPublisher::StageMaker;

    // Starts at once to load the binaural stage for 48 kHz, so that it is ready when headphones are chosen.
    PlaybackEngine(AudioSystem& audio, MainLoop& loop, StageMaker makeStage = ConfigPublisher::sharedSetStage);
    ~PlaybackEngine();

    // Opens the device with this UID. Without a UID, or when no such device exists, opens the system's default device.
    // Does nothing when that device is open already and `force` isn't set. When the default device stands in for an
    // absent one, the return of that one counts as a change of the device. Throws Error (device), and no device is open
    // then.
    void configure(const std::optional<std::string>& deviceUID, bool force);
    // Publishes a configuration; the next block fades to it. A binaural configuration waits until its stage has been
    // loaded: until then the output is silent and the stream doesn't advance.
    void setConfig(const MixConfig& config);
    // Publishes the reader's ring, starts the reader's thread and the device. Throws Error, and nothing plays then.
    void play(std::shared_ptr<StreamReader> reader, double startPosition);
    // Silences within a block; the device goes idle 20 seconds later.
    void stop();

    bool isConfigured() const { return stream_ != nullptr; }
    bool isRunning() const;
    // True once the current stream has been played to its end.
    bool finished() const;
    // True when no HRTF set is available for the current rate: binaural configurations stay silent.
    bool binauralMissing() const { return publisher_.stageMissing(); }
    // After HRTFSet::setOwn: a binaural configuration is silent until the new set has been read, and the stream waits.
    void renewBinaural();
    int deviceChannels() const { return deviceChannels_; }
    double sampleRate() const { return sampleRate_; }
    const std::string& deviceName() const { return deviceName_; }  // of the device asked for
    // The device that is open, or was last: another one than asked for when that one is absent.
    const AudioOutputDevice& device() const { return device_; }
    RenderContext& ctx() { return *ctx_; }
    const RenderContext& ctx() const { return *ctx_; }
    const AudioDevices& devices() const { return devices_; }
    // Of the published configuration; null without an upmix.
    const Upmixer* upmixer() const { return publisher_.upmixer(); }

    // The taken seat sets both callbacks. They may take or leave a seat.
    // Called when the device has gone or changed; the next configure opens a device again.
    std::function<void()> onDeviceChange;
    // Called when binauralMissing() becomes true while a configuration waits.
    std::function<void()> onBinauralMissing;

private:
    friend class EngineSeat;

    bool isOpenFor(const std::optional<std::string>& deviceUID) const;
    void open(const std::optional<std::string>& deviceUID);
    void fadeOut();
    void teardown();
    void systemChanged();
    void ensureRunning();
    void scheduleIdle();
    void halt();

    MainLoop& loop_;
    AudioSystem& audio_;
    AudioDevices devices_;
    std::unique_ptr<RenderContext> ctx_;
    std::shared_ptr<RenderWatch> watch_;
    ConfigPublisher publisher_;
    std::unique_ptr<OutputStream> stream_;
    std::shared_ptr<bool> streamToken_;  // dies with the stream, so that its late notices are dropped
    std::optional<std::string> configuredKey_;
    std::optional<std::string> wantedUID_;  // of the open stream
    bool standsIn_ = false;                 // the default device is open in place of an absent one
    std::shared_ptr<StreamReader> current_;
    TimerHandle idle_;
    int deviceChannels_ = 2;
    double sampleRate_ = 48000;
    std::string deviceName_;
    AudioOutputDevice device_;
    EngineSeat* seat_ = nullptr;  // the seat that is taken
    std::shared_ptr<void> watching_;
};

}  // namespace brindlehum
