// UpmixTuning: choosing and shaping the upmix: presets, the user's own ones, and single numbers.
#pragma once

#include <string>

#include "mix/player/listening_setup.h"

namespace brindlehum {

// Main thread. ListeningSetup announces each change of the upmix, SettingsStore each change of the own presets. Calls
// that take a name return what is wrong with it, as a text for the user; empty if all went well.
class UpmixTuning {
public:
    UpmixTuning(ListeningSetup& listening, SettingsStore& settings) : listening_(listening), settings_(settings) {}

    const UpmixSettings& now() const { return listening_.upmix(); }
    const OwnUpmixPresets& own() const { return settings_.value().upmixPresets; }
    // The numbers that the chosen preset started from.
    UpmixParams start() const { return presetParams(now(), own()); }
    bool isChanged() const { return now().params != start(); }

    void setOn(bool on);
    // Switches the upmix on with this preset, a raw value or the name of an own one.
    std::string choose(const std::string& name);
    void edit(const UpmixParams& params);  // the preset's name stays
    void reset() { edit(start()); }

    // Keeps the numbers under this name and chooses it. An own preset of this name is replaced.
    std::string saveAs(const std::string& name);
    // Of the chosen own preset.
    std::string rename(const std::string& to);
    // Forgets the chosen own preset. Its numbers go on as a change of the built-in one that it was made from.
    void remove();

private:
    ListeningSetup& listening_;
    SettingsStore& settings_;
};

}  // namespace brindlehum
