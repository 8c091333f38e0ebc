// RenderContext: takes one block from the ring through matrix, binaural stage and gain to the device's planes.
#include "mix/render/render_context.h"

#include <algorithm>
#include <cstring>

#include "mix/render/binaural_stage.h"
#include "mix/render/largest_magnitude.h"
#include "render/flush_denormals.h"

namespace brindlehum {
namespace {

mn_upmix* upmixOf(const mn_mix_config* config) {
    return config != nullptr ? config->upmix : nullptr;
}

bool hasEnded(const mn_ring* ring) {
    // The mark of the end is looked at first: frames that were written before it are then seen.
    return ring != nullptr && mn_ring_eof(ring) != 0 && mn_ring_available(ring) == 0;
}

bool isBinaural(const mn_mix_config* config) {
    return config != nullptr && config->to_binaural != 0;
}

void clear(float* plane, int32_t frames) {
    std::memset(plane, 0, sizeof(float) * size_t(std::max(frames, 0)));
}

}  // namespace

RenderContext::RenderContext(Feed feed, int blockFrames)
    : ringSlot_(mn_slot_create()),
      cfgSlot_(mn_slot_create()),
      stageSlot_(mn_slot_create()),
      position_(mn_f64_create(0)),
      finished_(mn_i64_create(0)),
      gain_(mn_f64_create(1)),
      peaks_(mn_peaks_create(maxDeviceChannels)),
      feed_(feed),
      blockFrames_(blockFrames),
      mixer_(blockFrames),
      storage_(makeAligned<float>(ConfigMixer::planeStride(blockFrames) *
                                  (2 * maxSourceChannels + maxVirtualSpeakers + 3))) {
    float* next = storage_.get();
    const auto assign = [&next, blockFrames](float*& plane) {
        plane = next;
        next += ConfigMixer::planeStride(blockFrames);
    };
    for (auto* planes : {&inA_, &inB_}) { std::ranges::for_each(*planes, assign); }
    std::ranges::for_each(bus_, assign);
    for (float** plane : {&binL_, &binR_, &silence_}) { assign(*plane); }
}

RenderContext::~RenderContext() {
    for (mn_slot* slot : {ringSlot_, cfgSlot_, stageSlot_}) { mn_slot_destroy(slot); }
    mn_f64_destroy(position_);
    mn_i64_destroy(finished_);
    mn_f64_destroy(gain_);
    mn_peaks_destroy(peaks_);
}

void RenderContext::forgetPrevious() noexcept {
    prevRing_ = nullptr;
    prevCfg_ = nullptr;
    prevStage_ = nullptr;
    tailLeft_ = 0;
    mixer_.forget();
    heard_.restart();
    prepared_ = nullptr;
    if (auto* stage = static_cast<BinauralStage*>(mn_slot_load(stageSlot_))) { stage->reset(); }
}

int32_t RenderContext::render(uint32_t frames, const DeviceBuffers& buffers) noexcept {
    const FlushDenormals flush;
    for (int32_t c = 0; c < buffers.channels; ++c) {
        if (buffers.planes[c] != nullptr) { std::memset(buffers.planes[c], 0, sizeof(float) * buffers.frames); }
    }
    deviceChannels_ = std::clamp(buffers.channels, 0, maxDeviceChannels);
    std::copy_n(buffers.planes, deviceChannels_, dev_.begin());
    const auto n = int32_t(std::min({frames, buffers.frames, uint32_t(blockFrames_)}));
    if (n < 1) { return 0; }
    takeInputs(buffers);

    auto* ring = static_cast<mn_ring*>(mn_slot_load(ringSlot_));
    const auto* const wanted = static_cast<const mn_mix_config*>(mn_slot_load(cfgSlot_));
    const auto* const config = takenUp(ring, wanted);
    if (ring != prevRing_) { heard_.restart(); }
    if (isBinaural(config) || isBinaural(prevCfg_) || tailLeft_ > 0) {
        for (float* lane : bus_) { clear(lane, n); }
    }
    const bool sameRing = ring == prevRing_;
    if (sameRing && config == prevCfg_) {
        // Without a configuration the ring isn't read.
        if (config != nullptr) { steadyBlock(ring, config, n); }
    } else {
        changeBlock(ring, config, n);
    }
    if (config != wanted) { prepare(wanted, n); }
    storePosition(config);
    spatialise(config, n);
    prevRing_ = ring;
    prevCfg_ = config;
    applyGain(n);
    measure(n);
    if (hasEnded(ring) && !mixer_.ringsOn(config)) { mn_i64_store(finished_, 1); }
    return 0;
}

// The configuration of this block. One that begins to upmix the running sound would be silent at first: the old one
// goes on until the new one's upmix has heard two windows.
const mn_mix_config* RenderContext::takenUp(mn_ring* ring, const mn_mix_config* config) noexcept {
    const mn_upmix* const upmix = upmixOf(config);
    const bool begins = upmix != nullptr && upmix != upmixOf(prevCfg_) && prevCfg_ != nullptr && ring == prevRing_;
    if (!begins || (feed_ == Feed::ring && ring == nullptr) || hasEnded(ring)) {
        prepared_ = nullptr;
        return config;
    }
    if (prepared_ != upmix) {
        prepared_ = upmix;
        preparedFrames_ = 0;
    }
    if (preparedFrames_ < 2 * mn_upmix_latency(upmix)) { return prevCfg_; }
    prepared_ = nullptr;
    return config;
}

// Runs after the block was mixed, on the same source.
void RenderContext::prepare(const mn_mix_config* config, int32_t n) noexcept {
    mixer_.prepare({config, block_}, n);
    preparedFrames_ += n;
}

void RenderContext::steadyBlock(mn_ring* ring, const mn_mix_config* config, int32_t n) noexcept {
    block_ = read(ring, inA_.data(), n, true);
    mixer_.mix({config, block_}, n, destination());
}

// Fades from the last block's ring and configuration to the new ones over exactly this block.
void RenderContext::changeBlock(mn_ring* ring, const mn_mix_config* config, int32_t n) noexcept {
    ConfigMixer::Input before, after;
    if (ring == prevRing_) {
        before = after = read(ring, inA_.data(), n, true);
    } else {
        before = read(prevRing_, inA_.data(), n, false);
        after = read(ring, inB_.data(), n, true);
    }
    mixer_.fade({prevCfg_, before}, {config, after}, n, destination());
}

void RenderContext::takeInputs(const DeviceBuffers& buffers) noexcept {
    inputChannels_ = std::clamp(buffers.inputChannels, 0, int32_t(maxSourceChannels));
    for (int32_t c = 0; c < inputChannels_; ++c) {
        inputs_[size_t(c)] = buffers.inputs[c] != nullptr ? buffers.inputs[c] : silence_;
    }
}

// Frames that the ring can't deliver are silent, and the position stays at the last known one. A ring that has ended
// gives nothing.
ConfigMixer::Input RenderContext::read(mn_ring* ring, float* const* planes, int32_t n, bool isHeard) noexcept {
    if (feed_ == Feed::device) { return {inputs_.data(), inputChannels_}; }
    if (ring == nullptr || mn_ring_channels(ring) > maxSourceChannels) { return {}; }
    const bool ended = hasEnded(ring);
    const int32_t channels = mn_ring_channels(ring);
    const int32_t got = mn_ring_read(ring, planes, n, &lastRead_);
    for (int32_t c = 0; got < n && c < channels; ++c) { clear(planes[c] + got, n - got); }
    if (isHeard && (got > 0 || heard_.hasStarted())) { heard_.add(n, lastRead_); }
    return ended ? ConfigMixer::Input{} : ConfigMixer::Input{planes, channels};
}

// An upmix plays what was read its latency ago.
void RenderContext::storePosition(const mn_mix_config* config) noexcept {
    const mn_upmix* const upmix = upmixOf(config);
    if (const auto position = heard_.at(upmix != nullptr ? mn_upmix_latency(upmix) : 0)) {
        mn_f64_store(position_, *position);
    }
}

ConfigMixer::Destination RenderContext::destination() const noexcept {
    return {.device = {dev_.data(), deviceChannels_}, .speakers = {bus_.data(), maxVirtualSpeakers}};
}

// Runs the stage while this block's or the last block's configuration feeds it, and then on silence until its sound has
// rung out. It then sleeps with its history cleared, so that no old sound remains when it wakes.
void RenderContext::spatialise(const mn_mix_config* config, int32_t n) noexcept {
    auto* stage = static_cast<BinauralStage*>(mn_slot_load(stageSlot_));
    if (stage != prevStage_) {
        tailLeft_ = 0;
        prevStage_ = stage;
        if (stage != nullptr) { stage->reset(); }
    }
    const mn_mix_config* feeding = isBinaural(config) ? config : isBinaural(prevCfg_) ? prevCfg_ : nullptr;
    if (stage == nullptr || (feeding == nullptr && tailLeft_ <= 0)) { return; }
    if (feeding != nullptr) {
        ears_ = {feeding->bin_left, feeding->bin_right};
        tailLeft_ = stage->tailFrames();
    } else {
        tailLeft_ -= n;
    }
    stage->process(bus_.data(), n, binL_, binR_);
    addToDevice(ears_.left, binL_, n);
    addToDevice(ears_.right, binR_, n);
    if (feeding == nullptr && tailLeft_ <= 0) { stage->reset(); }
}

void RenderContext::addToDevice(int32_t channel, const float* signal, int32_t n) noexcept {
    if (channel < 0 || channel >= deviceChannels_ || dev_[size_t(channel)] == nullptr) { return; }
    float* plane = dev_[size_t(channel)];
    for (int32_t i = 0; i < n; ++i) { plane[i] += signal[i]; }
}

// Reaches a new gain linearly, exactly on the block's last frame.
void RenderContext::applyGain(int32_t n) noexcept {
    const auto gain = float(mn_f64_load(gain_));
    const float step = (gain - lastGain_) / float(n);
    const bool steady = gain == lastGain_;
    lastGain_ = gain;
    if (steady && gain == 1) { return; }
    for (int32_t c = 0; c < deviceChannels_; ++c) {
        float* plane = dev_[size_t(c)];
        if (plane == nullptr) { continue; }
        if (steady) {
            for (int32_t i = 0; i < n; ++i) { plane[i] *= gain; }
        } else {
            for (int32_t i = 0; i < n; ++i) { plane[i] *= gain - step * float(n - 1 - i); }
        }
    }
}

void RenderContext::measure(int32_t n) noexcept {
    for (int32_t c = 0; c < deviceChannels_; ++c) {
        const float* plane = dev_[size_t(c)];
        if (plane == nullptr) { continue; }
        magnitudes_[size_t(c)] = largestMagnitude(plane, n);
        mn_peaks_raise(peaks_, c, magnitudes_[size_t(c)]);
    }
}

}  // namespace brindlehum
