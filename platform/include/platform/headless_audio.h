// HeadlessAudioSystem: an output for machines without a sound server, so that transport and playhead still run.
#pragma once

#include "platform/audio_system.h"

namespace brindlehum {

// One device of 16 channels at 48 kHz that is always present. Each stream calls render in blocks of 256 frames on its
// own thread, paced by the system's steady clock, and discards the rendered audio. Never calls `onChange`.
class HeadlessAudioSystem : public AudioSystem {
public:
    static constexpr uint32_t deviceID = 1;
    static constexpr int channels = 16;
    static constexpr double sampleRate = 48000;  // Hz
    static constexpr uint32_t blockFrames = 256;
    static constexpr const char* uid = "brindlehum.headless";
    static constexpr const char* name = "Headless output (no sound server)";

    std::vector<AudioOutputDevice> allOutputs() override;
    std::optional<uint32_t> defaultOutput() override { return deviceID; }
    SoundServer server() override { return SoundServer::absent; }
    std::unique_ptr<OutputStream> openOutput(uint32_t id, bool followsDefault, RenderTarget& target,
                                             std::function<void()> onChange) override;
};

}  // namespace brindlehum
