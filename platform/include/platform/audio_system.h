// AudioSystem: the output devices of the machine and the streams that play on them.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brindlehum {

// One output device. `id` is valid in this run only; `uid` stays the same across runs.
struct AudioOutputDevice {
    uint32_t id = 0;
    std::string uid;
    std::string name;
    int outputChannels = 0;
    bool operator==(const AudioOutputDevice&) const = default;
};

// One block of the device's buffers: `channels` planes of `frames` floats. Any plane may be null.
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

// A prepared but not yet running stream on an open device. Main thread.
class OutputStream {
public:
    virtual ~OutputStream() = default;  // stops the stream; no render runs after it returns
    virtual int channels() const = 0;
    virtual double sampleRate() const = 0;  // Hz
    // Starts or resumes. Throws Error (device).
    virtual void start() = 0;
    // Returns when no render is running and none will.
    virtual void pause() = 0;
    virtual bool isRunning() const = 0;
    // False once a better way to play has appeared (a sound server, for the headless output). The next configure then
    // rebuilds the stream.
    virtual bool isCurrent() const = 0;
};

// Main thread.
class AudioSystem {
public:
    virtual ~AudioSystem() = default;
    // In the system's order. Queries the system at each call; empty on failure.
    virtual std::vector<AudioOutputDevice> allOutputs() = 0;
    virtual std::optional<uint32_t> defaultOutput() = 0;
    // Opens a device. With `followsDefault`, a change of the default device counts as a change of this one. Calls
    // `onChange` on the main thread when the device disappears, its format changes, the default changes (if followed)
    // or the server disappears: at most once, and never after the stream is destroyed. Throws Error (device) with the
    // text for the user.
    virtual std::unique_ptr<OutputStream> openOutput(uint32_t id, bool followsDefault, RenderTarget& target,
                                                     std::function<void()> onChange) = 0;
};

}  // namespace brindlehum
