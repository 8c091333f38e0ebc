// PluginHost: effects of other makers that are installed on this machine, and running instances of them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

#include "platform/plugin_window.h"

namespace brindlehum {

// A number that an effect lets its user set.
struct PluginControl {
    std::string symbol;  // its name in files; stays the same across versions
    std::string name;
    double low = 0, high = 1, rest = 0;  // what is set lies between the first two
    bool isSwitch = false;               // off at 0
    bool isWhole = false;
    bool isLogarithmic = false;
    std::string unit;                                     // "dB"; may be empty
    std::vector<std::pair<std::string, double>> choices;  // the only values, when it isn't empty
    bool isHidden = false;                                // only the effect's own window sets it
    // What is heard of a wish.
    double heard(double value) const { return std::clamp(value, low, high); }
    bool operator==(const PluginControl&) const = default;
};

// A file that an effect reads, such as an impulse response.
struct PluginFile {
    std::string uri;  // its name in files
    std::string name;
    bool operator==(const PluginFile&) const = default;
};

// What an instance starts with.
struct PluginSettings {
    std::map<std::string, double> values;      // of its controls by symbol, where they aren't at rest
    std::map<std::string, std::string> files;  // by URI, as storedPath() gives them
    std::string state;                         // what PluginInstance::state() returned once
    bool operator==(const PluginSettings&) const = default;
};

struct PluginInfo {
    std::string uri;
    std::string name;
    std::string maker;   // may be empty
    std::string bundle;  // URI of the folder that it lies in
    int inputs = 0;      // of audio, without side chains
    int outputs = 0;
    std::vector<PluginControl> controls;
    std::vector<PluginFile> files;
    bool hasWindow = false;  // one of its own, for X11
    std::string refusal;     // why it can't be an insert, as one line; empty for one that can
    bool operator==(const PluginInfo&) const = default;
};

// One running effect of a fixed width. Control side, except where stated.
class PluginInstance {
public:
    virtual ~PluginInstance() = default;
    // Audio thread. `inputs` and `outputs` hold PluginInfo::inputs and ::outputs planes of at most `maxFrames` frames;
    // a null input is silent, a null output isn't wanted. None of our own code in it allocates, locks or throws; what
    // the effect does is up to its maker.
    virtual void process(const float* const* inputs, float* const* outputs, uint32_t frames) noexcept = 0;
    // Any thread; heard from the next block. `index` counts PluginInfo::controls.
    virtual void setControl(size_t index, double value) noexcept = 0;
    // Has it read another file from the next block on. Blocks that don't come let a number of them get lost.
    virtual void setFile(const std::string& uri, const std::string& storedPath) = 0;
    // Hands it what its window has to say, from the next block on. Lost like a file's name.
    virtual void sendMessage(std::span<const uint8_t> message) = 0;
    // Opens its own window inside another one. Loads more of the maker's code into this process. The instance must
    // outlive the window, and has one at a time. Throws Error when it can't be had.
    virtual std::unique_ptr<PluginWindow> openWindow(const PluginInfo& info, const PluginWindowPlace& place) = 0;
    // Any thread: the frames by which it delayed the last block.
    virtual int latency() const noexcept = 0;
    // What it keeps besides its controls, as a text; empty when there is nothing.
    virtual std::string state() const = 0;
};

// One thread.
class PluginHost {
public:
    static constexpr uint32_t maxFrames = 4096;  // in a block

    virtual ~PluginHost() = default;
    // Reads the description of one effect, which lies in `bundle`, or elsewhere if it has moved. Throws Error when it
    // isn't installed.
    virtual PluginInfo describe(const std::string& uri, const std::string& bundle) = 0;
    // Loads the maker's code into this process. The instance has heard one block of silence, so that its latency is
    // known. Throws Error when it can't be had.
    virtual std::unique_ptr<PluginInstance> instantiate(const PluginInfo& info, double sampleRate,
                                                        const PluginSettings& settings = {}) = 0;
};

}  // namespace brindlehum
