// HRTFSet: reads a SOFA file through libmysofa and brings its responses to the device's rate and a common level.
#include "mix/render/hrtf_set.h"

#include <mysofa.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <numeric>

#include "base/error.h"
#include "dsp/resampler.h"

namespace brindlehum {
namespace {

struct FreeSet {
    void operator()(MYSOFA_HRTF* p) const { mysofa_free(p); }
    void operator()(MYSOFA_LOOKUP* p) const { mysofa_lookup_free(p); }
    void operator()(MYSOFA_NEIGHBORHOOD* p) const { mysofa_neighborhood_free(p); }
};

bool isUsable(MYSOFA_HRTF& set) {
    const size_t samples = size_t(set.M) * set.R * set.N;
    return mysofa_check(&set) == MYSOFA_OK && set.R == 2 && set.M > 0 && set.N > 0 &&
           set.N <= unsigned(HRTFSet::maxTaps) && set.DataIR.elements == samples &&
           set.SourcePosition.elements == size_t(set.M) * set.C && set.DataSamplingRate.elements > 0 &&
           set.DataSamplingRate.values[0] > 0 &&
           (set.DataDelay.elements == set.R || set.DataDelay.elements == size_t(set.M) * set.R);
}

// Resamples all responses, one after the other, in one conversion of both ears. Each starts at an input frame that
// falls on a whole output frame, so that none shifts against another, with room between them for the filter's ringing.
// (The library's own conversion is some ten times slower, and its level depends on the rate.)
void resample(MYSOFA_HRTF& set, double rate) {
    const double from = set.DataSamplingRate.values[0];
    const auto wholeFrom = std::llround(from);
    const auto wholeTo = std::llround(rate);
    if (wholeFrom == wholeTo) { return; }
    const int64_t grid = wholeFrom / std::gcd(wholeFrom, wholeTo);
    const int64_t ringing = 512;
    const int64_t stride = (int64_t(set.N) + ringing + grid - 1) / grid * grid;
    const int64_t outStride = stride * wholeTo / wholeFrom;
    const auto taps = unsigned(std::ceil(set.N * double(wholeTo) / double(wholeFrom)));
    auto* result = static_cast<float*>(std::calloc(size_t(set.M) * set.R * taps, sizeof(float)));
    if (result == nullptr) { throw std::bad_alloc(); }

    Resampler converter(double(wholeFrom), double(wholeTo), 2);
    std::vector<float> in[2] = {std::vector<float>(size_t(stride)), std::vector<float>(size_t(stride))};
    std::vector<float> out[2] = {std::vector<float>(size_t(outStride)), std::vector<float>(size_t(outStride))};
    float* outputs[] = {out[0].data(), out[1].data()};
    unsigned measurement = 0;
    int64_t at = 0;  // next frame of the current measurement's stretch
    const Resampler::Pull pull = [&](int limit, const float** planes) {
        if (at == stride) { at = 0, ++measurement; }
        if (measurement >= set.M) { return 0; }
        if (at == 0) {
            for (unsigned ear = 0; ear < 2; ++ear) {
                std::copy_n(set.DataIR.values + (size_t(measurement) * 2 + ear) * set.N, set.N, in[ear].begin());
            }
        }
        const int n = int(std::min<int64_t>(limit, stride - at));
        for (size_t ear = 0; ear < 2; ++ear) { planes[ear] = in[ear].data() + at; }
        at += n;
        return n;
    };
    const auto level = float(double(wholeFrom) / double(wholeTo));
    for (unsigned m = 0; m < set.M; ++m) {
        converter.process(outputs, int(outStride), pull);
        for (unsigned ear = 0; ear < 2; ++ear) {
            float* response = result + (size_t(m) * 2 + ear) * taps;
            for (unsigned i = 0; i < taps; ++i) { response[i] = out[ear][i] * level; }
        }
    }
    std::free(set.DataIR.values);  // the library frees this array with free()
    set.DataIR.values = result;
    set.DataIR.elements = set.M * set.R * taps;
    set.N = taps;
    set.DataSamplingRate.values[0] = float(wholeTo);
}

}  // namespace

struct HRTFSet::Data {
    std::unique_ptr<MYSOFA_HRTF, FreeSet> set;
    std::unique_ptr<MYSOFA_LOOKUP, FreeSet> lookup;
    std::unique_ptr<MYSOFA_NEIGHBORHOOD, FreeSet> neighbours;
    double delayScale = 1;  // device frames in one frame of the file, in which its delays are counted
    std::mutex mutex;       // the look-up shares scratch memory

    // Both ears' interpolated responses, without their delays; stores those in `delays`, in frames of the file.
    std::vector<float> responses(const Direction& direction, float (&delays)[2]) {
        float position[3] = {float(direction.az), float(direction.el), 1};
        mysofa_s2c(position);
        std::vector<float> scratch(size_t(set->N) * 2);
        const std::lock_guard lock(mutex);
        const int nearest = mysofa_lookup(lookup.get(), position);
        if (nearest < 0) { return scratch; }
        const float* found = mysofa_interpolate(set.get(), position, nearest,
                                                mysofa_neighborhood(neighbours.get(), nearest), scratch.data(), delays);
        if (found != scratch.data()) { std::copy_n(found, scratch.size(), scratch.begin()); }
        return scratch;
    }
};

HRTFSet::HRTFSet(std::unique_ptr<Data> data, double sampleRate, int taps)
    : data_(std::move(data)), sampleRate_(sampleRate), taps_(taps) {}
HRTFSet::~HRTFSet() = default;

std::shared_ptr<const HRTFSet> HRTFSet::load(const std::filesystem::path& file, double sampleRate) {
    if (!(sampleRate >= 1000 && sampleRate <= 1e6)) { throw Error("Unusable sample rate for headphones"); }
    const auto fail = [&] { throw Error("Can't read the HRTF set " + file.filename().string()); };
    std::error_code unreadable;  // a pipe would be waited for
    if (!std::filesystem::is_regular_file(file, unreadable)) { fail(); }
    auto data = std::make_unique<Data>();
    int error = MYSOFA_OK;
    data->set.reset(mysofa_load(file.c_str(), &error));
    if (!data->set || error != MYSOFA_OK || !isUsable(*data->set)) { fail(); }
    MYSOFA_HRTF& set = *data->set;
    mysofa_tocartesian(&set);
    data->lookup.reset(mysofa_lookup_init(&set));
    if (!data->lookup) { fail(); }
    data->neighbours.reset(mysofa_neighborhood_init(&set, data->lookup.get()));
    if (!data->neighbours) { fail(); }

    // Measure the level at the file's own rate, where all frequencies count in the energy.
    float delays[2] = {};
    const std::vector<float> ahead = data->responses({0, 0}, delays);
    const double energy = std::inner_product(ahead.begin(), ahead.end(), ahead.begin(), 0.0) / 2;
    if (!(energy > 0) || !std::isfinite(energy)) { fail(); }
    const auto level = float(1 / std::sqrt(energy));
    for (unsigned i = 0; i < set.DataIR.elements; ++i) { set.DataIR.values[i] *= level; }

    data->delayScale = sampleRate / double(set.DataSamplingRate.values[0]);
    const float* allDelays = set.DataDelay.values;
    const float longest = *std::max_element(allDelays, allDelays + set.DataDelay.elements);
    if (!(longest >= 0) || longest > float(maxTaps)) { fail(); }
    resample(set, sampleRate);
    const int taps = int(set.N) + int(std::ceil(double(longest) * data->delayScale));
    return std::shared_ptr<const HRTFSet>(new HRTFSet(std::move(data), sampleRate, taps));
}

std::pair<std::vector<float>, std::vector<float>> HRTFSet::impulses(const Direction& direction) const {
    float delays[2] = {};
    const std::vector<float> both = data_->responses(direction, delays);
    const auto length = size_t(data_->set->N);
    const auto ear = [&](size_t index) {
        auto impulse = std::vector<float>(size_t(taps_));
        const double delay = std::max(0.0, double(delays[index]) * data_->delayScale);
        const auto shift = std::min(size_t(std::llround(delay)), impulse.size() - length);
        std::copy_n(both.begin() + long(index * length), length, impulse.begin() + long(shift));
        return impulse;
    };
    return {ear(0), ear(1)};
}

}  // namespace brindlehum
