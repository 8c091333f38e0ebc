// ManualAudioSystem: output devices that a test makes up, and whose render the test itself drives.
#pragma once

#include "platform/audio_system.h"
#include "platform/main_loop.h"

namespace brindlehum {

// Starts with one device, {1, "manual", "Manual", 16 channels}, which is the default, at 48 kHz. Main thread.
// `onChange` of the streams comes through `loop`.
class ManualAudioSystem : public AudioSystem {
public:
    explicit ManualAudioSystem(MainLoop& loop);
    ~ManualAudioSystem() override;

    std::vector<AudioOutputDevice> allOutputs() override { return outputs_; }
    std::optional<uint32_t> defaultOutput() override { return default_; }
    std::unique_ptr<OutputStream> openOutput(uint32_t id, bool followsDefault, RenderTarget& target,
                                             std::function<void()> onChange) override;

    // --- What happens to the machine.
    // Announces the change to streams whose device has gone or changed.
    void setOutputs(std::vector<AudioOutputDevice> outputs);
    // Announces the change to streams that follow the default.
    void setDefault(std::optional<uint32_t> id);
    // Of streams opened from now on, in Hz.
    void setSampleRate(double hertz) { sampleRate_ = hertz; }
    // While set, openOutput or start throw Error (device) with "Couldn't open the output device".
    void setOpeningFails(bool fails) { openingFails_ = fails; }
    void setStartingFails(bool fails) { startingFails_ = fails; }
    // The streams open now stop being current.
    void supersede();

    // --- What is heard.
    // One block rendered by the newest running stream: a plane of `frames` floats a channel, filled with NaN
    // before; empty when no stream runs.
    std::vector<std::vector<float>> pump(uint32_t frames);
    int openStreams() const { return int(streams_.size()); }
    int opened() const { return opened_; }    // streams ever opened
    int started() const { return started_; }  // starts that took a stream from standing to running

private:
    class Stream;
    MainLoop& loop_;
    std::vector<AudioOutputDevice> outputs_;
    std::optional<uint32_t> default_ = 1;
    double sampleRate_ = 48000;
    bool openingFails_ = false;
    bool startingFails_ = false;
    std::vector<Stream*> streams_;  // in order of opening
    int opened_ = 0;
    int started_ = 0;
};

}  // namespace brindlehum
