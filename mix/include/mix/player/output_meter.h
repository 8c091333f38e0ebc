// OutputMeter: the levels of the outputs that the active profile plays on.
#pragma once

#include <QObject>
#include <string>
#include <vector>

#include "mix/player/meter_level.h"
#include "mix/player/transport.h"
#include "settings/settings_store.h"

namespace brindlehum {

// Main thread. Takes the peaks 30 times a second while the player plays, and on until the levels have fallen.
class OutputMeter : public QObject {
    Q_OBJECT
public:
    struct Output {
        std::string label;  // the speaker's, or "L" and "R" for headphones
        int channel = 0;    // of the device, from 0
        MeterLevel level;
    };

    OutputMeter(const PlaybackEngine& engine, const SettingsStore& settings, MainLoop& loop, Transport& transport);

    const std::vector<Output>& outputs() const { return outputs_; }
    // Clears the marks of over-range.
    void clearOver();

Q_SIGNALS:
    void changed();  // the levels, or the outputs

private:
    void refresh();
    void tick();

    const PlaybackEngine& engine_;
    const SettingsStore& settings_;
    MainLoop& loop_;
    Transport& transport_;
    std::vector<Output> outputs_;
    double last_ = 0;  // seconds, of the last tick
    TimerHandle timer_;
};

// The outputs of a profile on a device with these names of channels, in the order of its layout, at rest. Speakers that
// are off have none.
std::vector<OutputMeter::Output> meteredOutputs(const OutputProfile& profile,
                                                const std::vector<std::string>& positions);

}  // namespace brindlehum
