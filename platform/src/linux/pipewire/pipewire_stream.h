// PipeWireStream: our planar float ports, linked to the input ports of a sink and filled by a render target, which may
// hear the output ports of a source.
#pragma once

#include <pipewire/filter.h>

#include <atomic>
#include <memory>
#include <optional>
#include <vector>

#include "cycle_watch.h"
#include "pipewire_link.h"
#include "pipewire_session.h"
#include "platform/audio_system.h"
#include "platform/duplex_audio.h"
#include "platform/main_loop.h"

namespace brindlehum {

// Opening doesn't wait for the server: the ports are linked as the server announces them, and a refusal counts as a
// change of the device. Main thread, except `process`, which runs on the library's real-time thread, and the listener's
// call.
class PipeWireStream : public PassStream, private PipeWireListener {
public:
    // The most frames in one call of render, whatever the server's quantum.
    static constexpr uint32_t largestBlock = 4096;
    // The capacity in frames of a port's buffer in the library.
    static constexpr uint32_t largestQuantum = 8192;

    struct Ends {
        AudioOutputDevice device;
        bool followsDefault = false;
        // With it the stream listens, too: to the first of its ports, or, when its id is 0, to what others link to
        // ours.
        std::optional<AudioInputDevice> input = {};
        uint32_t through = 0;  // as in DuplexRequest
        bool isPass = false;   // it has the device's channels as inputs and outputs, and links nothing
    };
    // Throws Error (device).
    PipeWireStream(std::shared_ptr<PipeWireSession> session, MainLoop& loop, const Ends& ends, RenderTarget& target,
                   std::function<void()> onChange);
    ~PipeWireStream() override;

    int channels() const override { return int(ports_.size()); }
    double sampleRate() const override { return sampleRate_; }
    void start() override;
    void pause() override;
    bool isRunning() const override { return running_; }
    bool isCurrent() const override { return true; }
    StreamFigures figures() const override { return {blockSeconds_, dropouts_}; }
    uint32_t node() const override;

private:
    using Links = std::vector<std::unique_ptr<PipeWireLink>>;
    void makeFilter(size_t outputs, size_t inputs);
    void addPorts(std::vector<void*>& ports, size_t count, spa_direction direction, const char* prefix);
    void makeLinks() noexcept;
    void linkInputs() noexcept;
    void linkOutputs() noexcept;
    void linkThrough() noexcept;
    void link(Links& links, const PipeWireLink::End& from, const PipeWireLink::End& to) noexcept;
    bool howls(const PipeWireGraph& graph) const noexcept;
    void refused() noexcept;
    void close();
    void graphChanged() noexcept override;
    void announceChange() noexcept;
    void rateSeen() noexcept;
    void process(const spa_io_position& position) noexcept;
    void renderCycle(uint32_t frames) noexcept;
    bool fetchPlanes(uint32_t frames) noexcept;

    const std::shared_ptr<PipeWireSession> session_;
    MainLoop& main_;
    RenderTarget& target_;
    const uint32_t sink_;     // global id
    const uint32_t source_;   // the same; 0 for none
    const uint32_t through_;  // the same
    const bool isPass_;
    const bool followsDefault_;
    double sampleRate_;  // Hz
    std::shared_ptr<std::function<void()>> onChange_;
    bool announced_ = false;  // under the library's lock

    pw_filter* filter_ = nullptr;
    spa_hook filterHook_{};
    spa_source* rateEvent_ = nullptr;  // raised by process
    std::vector<void*> ports_;         // our outputs, one for each channel
    std::vector<void*> inputPorts_;    // our inputs, when it listens
    Links links_, inputLinks_;
    bool wasThere_ = false;  // the node of through_; under the library's lock
    TimerHandle beat_;       // while it runs

    std::atomic<bool> running_ = false;      // written by main, read by process
    std::atomic<bool> deaf_ = false;         // it would howl
    std::atomic<double> runningRate_ = 0.0;  // Hz, written by process
    std::atomic<double> blockSeconds_ = 0;   // likewise
    std::atomic<uint64_t> dropouts_ = 0;     // likewise
    // Used by the real-time thread while running_ is set, else by the main thread.
    std::vector<float*> planes_;
    std::vector<float*> block_;
    std::vector<const float*> heard_;
    std::vector<const float*> heardBlock_;
    bool primed_ = false;
    uint32_t waited_ = 0;  // frames
    CycleWatch cycles_;
};

}  // namespace brindlehum
