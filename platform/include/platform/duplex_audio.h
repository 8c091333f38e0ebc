// DuplexAudio: what can be listened to, and streams that listen and play in one block of one clock.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/audio_system.h"

namespace brindlehum {

// Something to listen to: a capture device, what an output device is given, or our own open ports. `id` is valid in
// this run only; `uid` stays the same across runs.
struct AudioInputDevice {
    uint32_t id = 0;
    std::string uid;
    std::string name;
    int inputChannels = 0;
    std::vector<std::string> positions = {};  // as in AudioOutputDevice
    bool operator==(const AudioInputDevice&) const = default;
};

struct DuplexRequest {
    AudioInputDevice input;
    uint32_t output = 0;          // id of an output device
    bool followsDefault = false;  // as in AudioSystem::openOutput
    // Node of a PassStream, maybe another program's, through which the outputs go to the device; 0 for none. The stream
    // announces a change when the node has gone.
    uint32_t through = 0;
};

// A stream in the way of another one.
class PassStream : public OutputStream {
public:
    // The server's name for it; 0 until the server has answered.
    virtual uint32_t node() const = 0;
};

// Main thread. No call waits for the sound server.
class DuplexAudio {
public:
    // The input that isn't linked to anything: our ports stand open for other programs, as many as are asked for.
    static constexpr const char* openPortsUID = "brindlehum.ports";

    virtual ~DuplexAudio() = default;
    // As the system last announced them, in its order, with the open ports at the end. Their AudioSystem announces
    // changes.
    virtual std::vector<AudioInputDevice> allInputs() = 0;
    // Whether what the output is given comes back to the input, by what is linked now. It would howl.
    virtual bool feedsBack(const AudioInputDevice& input, uint32_t output) = 0;
    // Opens both sides. `target` gets the inputs in DeviceBuffers. Calls `onChange` as openOutput does, and also when
    // the input disappears, changes its channels, or is fed back: the stream is silent from the moment that it is.
    // Throws Error (device) with the text for the user.
    virtual std::unique_ptr<OutputStream> openDuplex(const DuplexRequest& request, RenderTarget& target,
                                                     std::function<void()> onChange) = 0;
    // A node with as many inputs and outputs as the output device has channels, which it links to nothing: a duplex
    // stream goes through it. Calls `onChange` as openOutput does. Throws Error (device).
    virtual std::unique_ptr<PassStream> openPass(uint32_t output, RenderTarget& target,
                                                 std::function<void()> onChange) = 0;
    // An output device of our own, "Brindlehum Bus", into which other programs play and which is among the inputs as
    // what that device is given. `positions` are the names of its channels, 1 to 64. It goes away with the handle, and
    // returns after the server has; null when it can't be made.
    virtual std::shared_ptr<void> makeBus(const std::vector<std::string>& positions) = 0;
    // The name of the bus among the inputs.
    static constexpr const char* busUID = "brindlehum-bus.monitor";
};

}  // namespace brindlehum
