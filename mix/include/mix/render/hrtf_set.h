// HRTFSet: head-related impulse responses of a SOFA file (AES69) at a device's rate.
#pragma once

#include <filesystem>
#include <memory>
#include <utility>
#include <vector>

#include "audio/speakers/speakers.h"

namespace brindlehum {

// Immutable once loaded. Any thread but the render thread.
class HRTFSet {
public:
    // Loads the file and resamples it to `sampleRate` (takes a tenth of a second or more). Throws Error when it can't
    // be read or isn't a set of two ears of up to `maxTaps` taps. Levels: noise from straight ahead keeps its energy,
    // averaged over both ears, and a response has the same level at every rate.
    static std::shared_ptr<const HRTFSet> load(const std::filesystem::path& file, double sampleRate);
    // The own set if it can be read, else the first readable one in the usual places; loaded once per rate and then
    // shared. Throws Error.
    static std::shared_ptr<const HRTFSet> shared(double sampleRate);
    // The set that the user has chosen, for the whole process; empty: none. `shared` reads it anew. Never waits.
    static void setOwn(const std::filesystem::path& file);
    // The usual places, best first: `Brindlehum/hrtf.sofa` under $XDG_DATA_HOME (a set of the user's own) and under
    // each of $XDG_DATA_DIRS, then the set that comes with libmysofa.
    static std::vector<std::filesystem::path> usualFiles();
    // The first of the usual files that exists, or else the last.
    static std::filesystem::path defaultFile();
    static constexpr int maxTaps = 16384;  // at the file's own rate
    ~HRTFSet();

    double sampleRate() const { return sampleRate_; }
    int taps() const { return taps_; }  // longest response, including the inter-aural delay
    // Left and right impulse response for a direction, `taps()` long.
    std::pair<std::vector<float>, std::vector<float>> impulses(const Direction& direction) const;

private:
    struct Data;
    HRTFSet(std::unique_ptr<Data> data, double sampleRate, int taps);

    std::unique_ptr<Data> data_;
    double sampleRate_;
    int taps_;
};

}  // namespace brindlehum
