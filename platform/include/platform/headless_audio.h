// HeadlessAudioSystem: an output for machines without a sound server, so that transport and playhead still run; and its
// duplex twin, which hears silence.
#pragma once

#include "platform/audio_system.h"
#include "platform/duplex_audio.h"

namespace brindlehum {

// One device of 16 channels at 48 kHz that is always present. Each stream calls render in blocks of 256 frames on its
// own thread, paced by the system's steady clock, and discards the rendered audio. Never calls `onChange`. A duplex
// stream hears silence on each of its inputs.
class HeadlessAudioSystem : public AudioSystem, public DuplexAudio {
public:
    static constexpr uint32_t deviceID = 1;
    static constexpr int channels = 16;
    static constexpr double sampleRate = 48000;  // Hz
    static constexpr uint32_t blockFrames = 256;
    static constexpr const char* uid = "brindlehum.headless";
    static constexpr const char* name = "Headless output (no sound server)";
    static constexpr uint32_t inputID = 2;
    static constexpr const char* inputUID = "brindlehum.headless.input";

    std::vector<AudioOutputDevice> allOutputs() override;
    std::optional<uint32_t> defaultOutput() override { return deviceID; }
    SoundServer server() override { return SoundServer::absent; }
    std::unique_ptr<OutputStream> openOutput(uint32_t id, bool followsDefault, RenderTarget& target,
                                             std::function<void()> onChange) override;

    DuplexAudio* duplex() override { return this; }
    std::vector<AudioInputDevice> allInputs() override;
    bool feedsBack(const AudioInputDevice& /*input*/, uint32_t /*output*/) override { return false; }
    std::unique_ptr<OutputStream> openDuplex(const DuplexRequest& request, RenderTarget& target,
                                             std::function<void()> onChange) override;
    // Always throws: there are no nodes to go through.
    std::unique_ptr<PassStream> openPass(uint32_t output, RenderTarget& target,
                                         std::function<void()> onChange) override;
    std::shared_ptr<void> makeBus(const std::vector<std::string>& positions) override;

private:
    std::weak_ptr<std::vector<std::string>> bus_;
};

}  // namespace brindlehum
