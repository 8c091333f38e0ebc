// AudioSystem: the output devices of the machine and the streams that play on them.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brindlehum {

// One output device: `id` is of this run only, `uid` is stable.
struct AudioOutputDevice {
    uint32_t id = 0;
    std::string uid;
    std::string name;
    int outputChannels = 0;
    bool operator==(const AudioOutputDevice&) const = default;
};

// The device's buffers of one block: `channels` planes of `frames` floats, of which any may be null.
struct DeviceBuffers {
    float* const* planes = nullptr;
    int32_t channels = 0;
    uint32_t frames = 0;
};

// Called on the device's real-time thread.
class RenderTarget {
public:
    virtual ~RenderTarget() = default;
    // Fills `buffers` with `frames` frames; always 0. Real-time safe.
    virtual int32_t render(uint32_t frames, const DeviceBuffers& buffers) noexcept = 0;
};

// A stream opened on a device, prepared and not running. Main thread.
class OutputStream {
public:
    virtual ~OutputStream() = default;  // stops; no render runs once it has returned
    virtual int channels() const = 0;
    virtual double sampleRate() const = 0;  // Hz
    // Starts or goes on. Throws Error (device).
    virtual void start() = 0;
    // Returns when no render is running and none will.
    virtual void pause() = 0;
    virtual bool isRunning() const = 0;
    // False once a better way to play has appeared (a sound server, for the headless output): the next configure
    // rebuilds.
    virtual bool isCurrent() const = 0;
};

// Main thread.
class AudioSystem {
public:
    virtual ~AudioSystem() = default;
    // In the order the system gives them; asked anew each time; empty on failure.
    virtual std::vector<AudioOutputDevice> allOutputs() = 0;
    virtual std::optional<uint32_t> defaultOutput() = 0;
    // Opens a device. `followsDefault` makes a change of the default device count as a change of this one.
    // `onChange` is called on the main thread when the device has gone, its format or (if followed) the default
    // has changed, or the server has; at most once, and not after the stream's destruction. Throws Error (device) with
    // the text for the user.
    virtual std::unique_ptr<OutputStream> openOutput(uint32_t id, bool followsDefault, RenderTarget& target,
                                                     std::function<void()> onChange) = 0;
};

}  // namespace brindlehum
