// HRTFSet: head-related impulse responses of a SOFA file (AES69) at a device's rate.
#pragma once

#include <filesystem>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "audio/speakers.h"

namespace brindlehum {

// Immutable once loaded, apart from a guarded cache inside. Control side.
class HRTFSet {
public:
    // Loads the file, resampled to `sampleRate` (tens to hundreds of milliseconds). Throws Error when it can't be
    // read. Levels: a frontal source has the same energy at each ear at every rate.
    static std::shared_ptr<const HRTFSet> load(const std::filesystem::path& file, double sampleRate);
    // The packaged set, or the first that stands in the usual places; one load a rate, then shared.
    static std::shared_ptr<const HRTFSet> shared(double sampleRate);
    static std::filesystem::path defaultFile();
    ~HRTFSet();

    double sampleRate() const { return sampleRate_; }
    int taps() const { return taps_; }  // longest response, inter-aural delay included
    // Left and right impulse response of a direction, `taps()` long.
    std::pair<std::vector<float>, std::vector<float>> impulses(const Direction& direction) const;

private:
    HRTFSet() = default;
    struct Data;
    std::unique_ptr<Data> data_;
    double sampleRate_ = 0;
    int taps_ = 0;
};

}  // namespace brindlehum
