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
    // Loads the file, resampled to `sampleRate` (a tenth of a second and more). Throws Error when it can't be read or
    // isn't a set of two ears of up to `maxTaps` taps. Levels: noise from straight ahead keeps its energy, in the mean
    // of both ears, and a response is the same at every rate.
    static std::shared_ptr<const HRTFSet> load(const std::filesystem::path& file, double sampleRate);
    // The first set that can be read of those in the usual places; one load a rate, then shared. Throws Error.
    static std::shared_ptr<const HRTFSet> shared(double sampleRate);
    // The usual places, best first: `Brindlehum/hrtf.sofa` under $XDG_DATA_HOME (a set of the user's own) and under
    // each of $XDG_DATA_DIRS, then the set that comes with libmysofa.
    static std::vector<std::filesystem::path> usualFiles();
    // The first of them that exists, or the last.
    static std::filesystem::path defaultFile();
    static constexpr int maxTaps = 16384;  // at the file's own rate
    ~HRTFSet();

    double sampleRate() const { return sampleRate_; }
    int taps() const { return taps_; }  // longest response, inter-aural delay included
    // Left and right impulse response of a direction, `taps()` long.
    std::pair<std::vector<float>, std::vector<float>> impulses(const Direction& direction) const;

private:
    struct Data;
    HRTFSet(std::unique_ptr<Data> data, double sampleRate, int taps);

    std::unique_ptr<Data> data_;
    double sampleRate_;
    int taps_;
};

}  // namespace brindlehum
