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
    // What the device calls each channel, in the sound server's words ("FL", "RR", "AUX0"); an empty text where it
    // calls it nothing.
    std::vector<std::string> positions = {};
    bool operator==(const AudioOutputDevice&) const = default;
};

// One block of the device's buffers: `channels` planes of `frames` floats to be filled, and what a stream that also
// listens has heard. Any plane may be null; a null input is silent.
struct DeviceBuffers {
    float* const* planes = nullptr;
    int32_t channels = 0;
    uint32_t frames = 0;
    const float* const* inputs = nullptr;
    int32_t inputChannels = 0;
};

// Called on the device's real-time thread.
class RenderTarget {
public:
    virtual ~RenderTarget() = default;
    // Fills `buffers` with `frames` frames; always 0. Real-time safe.
    virtual int32_t render(uint32_t frames, const DeviceBuffers& buffers) noexcept = 0;
    // Whether the last block held on to something that had been replaced before it began. Render thread.
    virtual bool holdsReplaced() const noexcept { return false; }
};

// How a stream does, since it was opened.
struct StreamFigures {
    double blockSeconds = 0;  // length of the last block; 0 before the first one
    uint64_t dropouts = 0;    // blocks of ours that the device didn't get in time, or that had no buffer
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
    // False once a better way to play has appeared (a sound server, for the headless output). The engine then rebuilds
    // the stream.
    virtual bool isCurrent() const = 0;
    virtual StreamFigures figures() const { return {}; }
};

// What stands between us and the devices.
enum class SoundServer : uint8_t {
    running,
    absent,
    silent,  // it is there, but doesn't answer
};

class DuplexAudio;

// Main thread. No call waits for the sound server, so that one that hangs doesn't block the windows.
class AudioSystem {
public:
    virtual ~AudioSystem() = default;
    // As the system last announced them, in its order.
    virtual std::vector<AudioOutputDevice> allOutputs() = 0;
    virtual std::optional<uint32_t> defaultOutput() = 0;
    virtual SoundServer server() { return SoundServer::running; }
    // Calls `heard` after the outputs, the default one or the server's state have changed, until the returned handle is
    // destroyed.
    [[nodiscard]] std::shared_ptr<void> watch(std::function<void()> heard);
    // Opens a device. With `followsDefault`, a change of the default device counts as a change of this one. Calls
    // `onChange` on the main thread when the device disappears, its format changes, the default changes (if followed)
    // or the server disappears or falls silent: at most once, and never after the stream is destroyed. Throws Error
    // (device) with the text for the user.
    virtual std::unique_ptr<OutputStream> openOutput(uint32_t id, bool followsDefault, RenderTarget& target,
                                                     std::function<void()> onChange) = 0;
    // For streams that listen, too; null where that can't be done.
    virtual DuplexAudio* duplex() { return nullptr; }

protected:
    void announce();  // calls the watchers

private:
    std::vector<std::weak_ptr<std::function<void()>>> watchers_;
};

}  // namespace brindlehum
