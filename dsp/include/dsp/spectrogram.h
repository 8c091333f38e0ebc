// Spectrogram: levels of a track over time and frequency.
#pragma once

#include <vector>

#include "dsp/signal_spectrum.h"
#include "dsp/sound.h"

namespace brindlehum {

// Holds work buffers: one thread at a time.
class Spectrogram {
public:
    static constexpr int longest = 8192;    // samples of a window, at any rate
    static constexpr float floorDb = -120;  // what is weaker counts as this

    // The window is the power of two next to 43 ms, Hann.
    explicit Spectrogram(double sampleRate);

    int size() const { return spectrum_.size(); }  // samples of a window
    int bins() const { return spectrum_.bins(); }
    double frequency(double bin) const { return bin * sampleRate_ / size(); }  // Hz

    // Stores bins() levels in dB of a sine at full scale: the mean power of up to four windows whose centres lie evenly
    // in from ..< to. Outside the track is silence.
    void levels(const Track& track, int64_t from, int64_t to, float* db);

private:
    void window(const Track& track, int64_t centre);

    double sampleRate_;
    HannSpectrum spectrum_;
    std::vector<float> samples_, magnitudes_, power_;
};

}  // namespace brindlehum
