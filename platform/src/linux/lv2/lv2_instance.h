// Lv2Instance: one running LV2 plug-in with all that it is promised.
#pragma once

#include <lv2/core/lv2.h>
#include <lv2/log/log.h>
#include <lv2/options/options.h>

#include <array>
#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "lv2_urids.h"
#include "lv2_worker.h"
#include "lv2_world.h"

namespace brindlehum {

// What all instances of a host share.
struct Lv2Shared {
    Lv2World world;
    Lv2Urids urids;
};

// What an instance tells its window: from the audio thread to the main thread.
struct Lv2Reports {
    explicit Lv2Reports(size_t ports) : numbers(ports) {}

    std::atomic<bool> areWanted = false;
    std::vector<std::atomic<float>> numbers;  // one a port, of those that tell one
    Lv2Messages events;                       // the number of a port, and an atom
};

class Lv2Instance : public PluginInstance {
public:
    // Throws Error when the plug-in refuses.
    Lv2Instance(std::shared_ptr<Lv2Shared> shared, const PluginInfo& info, double sampleRate,
                const PluginSettings& settings);
    ~Lv2Instance() override;

    void process(const float* const* inputs, float* const* outputs, uint32_t frames) noexcept override;
    void setControl(size_t index, double value) noexcept override;
    void setFile(const std::string& uri, const std::string& storedPath) override;
    void sendMessage(std::span<const uint8_t> message) override;
    std::unique_ptr<PluginWindow> openWindow(const PluginInfo& info, const PluginWindowPlace& place) override;
    int latency() const noexcept override { return latency_.load(std::memory_order_relaxed); }
    std::string state() const override;

    // --- For its window.
    const LilvPlugin* plugin() const { return plugin_; }
    LilvInstance* raw() const { return instance_; }
    Lv2Shared& shared() { return *shared_; }
    Lv2Reports& reports() { return reports_; }
    float sampleRate() const { return rate_; }                                   // Hz
    const std::vector<uint32_t>& controlPorts() const { return controlPorts_; }  // by PluginInfo::controls
    float wanted(size_t control) const noexcept { return wanted_[control].load(std::memory_order_relaxed); }
    int messagePort() const { return messagePort_; }

private:
    struct Port {
        Lv2PortKind kind;
        uint32_t index;  // among the plug-in's
    };
    struct Atoms {
        uint32_t port;
        bool isInput;
        std::vector<uint64_t> bytes;  // aligned as an atom must be
    };

    void makeOptions(double sampleRate);
    std::array<const LV2_Feature*, 11> features();
    void connect();
    void restore(const std::string& state);
    void resetAtoms() noexcept;
    void passMessages() noexcept;
    void report() noexcept;

    const std::shared_ptr<Lv2Shared> shared_;
    const LilvPlugin* plugin_;
    std::vector<Port> ports_;
    // Values of the options.
    int32_t minFrames_ = 0, maxFrames_ = 0, nominalFrames_ = 0, sequenceBytes_ = 0;
    float rate_ = 0;  // Hz
    std::vector<LV2_Options_Option> options_;
    LV2_Log_Log log_{};
    std::vector<LV2_Feature> offered_;
    std::vector<float> silence_, unwanted_;  // planes
    std::vector<float> numbers_;             // one a port; the plug-in's
    std::vector<uint32_t> controlPorts_;     // by PluginInfo::controls
    std::vector<std::atomic<float>> wanted_;
    std::vector<Atoms> atoms_;
    LV2_URID sequence_ = 0, chunk_ = 0;
    int messagePort_ = -1;  // the plug-in's port for messages, or its first for atoms
    Lv2Messages messages_;  // from setFile to the audio thread
    std::vector<uint64_t> event_ = std::vector<uint64_t>(Lv2Messages::size / sizeof(uint64_t) + 1);  // audio thread
    Lv2Reports reports_;
    std::vector<uint8_t> reported_ = std::vector<uint8_t>(Lv2Messages::size);  // audio thread
    int latencyPort_ = -1;
    std::atomic<int> latency_ = 0;
    Lv2Worker worker_;
    LilvInstance* instance_ = nullptr;
};

}  // namespace brindlehum
