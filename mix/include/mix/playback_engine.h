// PlaybackEngine: the control half of playback. It opens the device, publishes rings and configurations to the
// render side and retires what it replaced.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "audio/stream_reader.h"
#include "mix/audio_devices.h"
#include "mix/binaural_stage.h"
#include "mix/mix_config.h"
#include "mix/render_context.h"
#include "platform/main_loop.h"

namespace brindlehum {

// Main thread, every call.
class PlaybackEngine {
public:
    // Seconds that an object taken out of the audio path stays alive.
    static constexpr double retirement = 3.0;
    // Seconds that the device stays warm after the last stop.
    static constexpr double idleDelay = 20.0;

    PlaybackEngine(AudioSystem& audio, MainLoop& loop);
    ~PlaybackEngine();

    // Opens the device of this UID, or the system's default one without a UID or when it isn't there. Does
    // nothing when that device is open already and `force` isn't set. Throws Error 10.
    void configure(const std::optional<std::string>& deviceUID, bool force);
    // Publishes a configuration; the next block fades to it.
    void setConfig(const MixConfig& config);
    // Publishes the reader's ring, starts its thread and the device. Throws Error.
    void play(std::shared_ptr<StreamReader> reader, double startPosition);
    // Silences within a block; the device goes idle 20 seconds later.
    void stop();

    bool isConfigured() const { return stream_ != nullptr; }
    bool isRunning() const;
    int deviceChannels() const { return deviceChannels_; }
    double sampleRate() const { return sampleRate_; }
    const std::string& deviceName() const { return deviceName_; }
    RenderContext& ctx() { return *ctx_; }
    const AudioDevices& devices() const { return devices_; }

    // Called when the device has gone or changed; the next configure rebuilds.
    std::function<void()> onDeviceChange;

private:
    // [defined by its implementation]
    MainLoop& loop_;
    AudioSystem& audio_;
    AudioDevices devices_;
    std::unique_ptr<RenderContext> ctx_;
    std::unique_ptr<OutputStream> stream_;
    int deviceChannels_ = 2;
    double sampleRate_ = 48000;
    std::string deviceName_;
};

}  // namespace brindlehum
