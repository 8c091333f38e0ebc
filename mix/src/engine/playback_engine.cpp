// PlaybackEngine: opens and rests the device, publishes objects and retires replaced ones.
#include "mix/engine/playback_engine.h"

#include <algorithm>
#include <chrono>
#include <thread>

#include "base/error.h"
#include "mix/render/render_watch.h"

namespace brindlehum {

namespace {

// Takes a copy, because the call may replace or clear the callback itself.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
void notify(std::function<void()> callback) {
    if (callback) { callback(); }
}

}  // namespace

PlaybackEngine::PlaybackEngine(AudioSystem& audio, MainLoop& loop, StageMaker makeStage)
    : loop_(loop),
      audio_(audio),
      devices_(audio),
      ctx_(std::make_unique<RenderContext>()),
      watch_(std::make_shared<RenderWatch>(*ctx_)),
      publisher_(*ctx_, loop, watch_, std::move(makeStage)) {
    // The stream that has waited for this configuration starts.
    publisher_.onPublished = [this] {
        if (current_) { ctx_->setRing(current_->ring()); }
    };
    publisher_.onMissing = [this] { notify(onBinauralMissing); };
    watching_ = audio.watch([this] { systemChanged(); });
}

PlaybackEngine::~PlaybackEngine() {
    teardown();
    if (current_) { current_->cancel(); }
}

bool PlaybackEngine::isOpenFor(const std::optional<std::string>& deviceUID) const {
    if (!stream_ || configuredKey_ != deviceUID.value_or("default") || !stream_->isCurrent()) { return false; }
    return !standsIn_ || !deviceUID || !devices_.deviceID(*deviceUID);
}

// Leaves a device that only stood in for a better one which is there now.
void PlaybackEngine::systemChanged() {
    if (!stream_ || !configuredKey_ || isOpenFor(wantedUID_)) { return; }
    configuredKey_.reset();
    notify(onDeviceChange);
}

void PlaybackEngine::configure(const std::optional<std::string>& deviceUID, bool force) {
    if (!force && isOpenFor(deviceUID)) { return; }
    teardown();
    open(deviceUID);
    publisher_.open(sampleRate_);
}

void PlaybackEngine::open(const std::optional<std::string>& deviceUID) {
    auto id = deviceUID ? devices_.deviceID(*deviceUID) : std::nullopt;
    const bool followsDefault = !id;
    if (!id) { id = devices_.defaultOutput(); }
    if (!id) { throw Error(ErrorKind::device, "Couldn't open the output device"); }

    auto token = std::make_shared<bool>(true);
    // Handled one turn of the loop later, because handling it destroys the stream that calls.
    auto onChange = [this, weak = std::weak_ptr(token)] {
        loop_.post([this, weak] {
            if (!weak.lock()) { return; }
            configuredKey_.reset();
            notify(onDeviceChange);
        });
    };
    auto stream = audio_.openOutput(*id, followsDefault, *watch_, std::move(onChange));
    if (!stream || stream->channels() < 1 || !(stream->sampleRate() > 0)) {
        throw Error(ErrorKind::device, "Output device has no usable channels");
    }
    stream_ = std::move(stream);
    streamToken_ = std::move(token);
    standsIn_ = followsDefault && deviceUID;
    configuredKey_ = deviceUID.value_or("default");
    deviceChannels_ = std::min(stream_->channels(), RenderContext::maxDeviceChannels);
    sampleRate_ = stream_->sampleRate();
    deviceName_ = devices_.name(deviceUID);
    wantedUID_ = deviceUID;
    device_ = {};
    for (auto& device : devices_.allOutputs()) {
        if (device.id == *id) { device_ = std::move(device); }
    }
}

// Waits until the device can stop without a click: the current block and the one that fades must have ended. A device
// that has gone or changed gets no time, since nobody hears it.
void PlaybackEngine::fadeOut() {
    if (!configuredKey_ || !current_ || !isRunning()) { return; }
    ctx_->setRing(nullptr);
    const uint64_t mark = watch_->blocks();
    const auto limit = std::chrono::steady_clock::now() + std::chrono::duration<double>(maxFadeOut);
    while (watch_->mayStillUse(mark) && std::chrono::steady_clock::now() < limit) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

void PlaybackEngine::teardown() {
    fadeOut();
    streamToken_.reset();
    stream_.reset();
    watch_->setRunning(false);
    configuredKey_.reset();
    publisher_.close();
}

void PlaybackEngine::setConfig(const MixConfig& config) {
    publisher_.set(config);
    if (!publisher_.waits() && current_) { ctx_->setRing(current_->ring()); }
}

void PlaybackEngine::renewBinaural() {
    publisher_.renewStage();
    if (publisher_.waits()) { ctx_->setRing(nullptr); }
}

void PlaybackEngine::play(std::shared_ptr<StreamReader> reader, double startPosition) {
    ctx_->clearFinished();
    ctx_->setPosition(startPosition);
    // While a configuration waits, the ring waits too: the first block would read from it and play nothing.
    ctx_->setRing(publisher_.waits() ? nullptr : reader->ring());
    if (current_) { current_->cancel(); }
    publisher_.retire(std::exchange(current_, std::move(reader)));
    try {
        current_->start();
        ensureRunning();
    } catch (...) {
        stop();
        throw;
    }
}

void PlaybackEngine::stop() {
    ctx_->setRing(nullptr);
    if (current_) { current_->cancel(); }
    publisher_.retire(std::exchange(current_, nullptr));
    scheduleIdle();
}

bool PlaybackEngine::isRunning() const {
    return stream_ && stream_->isRunning();
}

bool PlaybackEngine::finished() const {
    // The cell alone isn't enough: a block that still plays the previous stream may set it after play() cleared it.
    return current_ && ctx_->finished() && mn_ring_eof(current_->ring()) != 0 &&
           mn_ring_available(current_->ring()) == 0;
}

void PlaybackEngine::ensureRunning() {
    idle_.reset();
    if (!stream_ || stream_->isRunning()) { return; }
    publisher_.forgetPrevious();
    watch_->setRunning(true);
    try {
        stream_->start();
    } catch (...) {
        watch_->setRunning(false);
        throw;
    }
}

void PlaybackEngine::scheduleIdle() {
    idle_ = loop_.after(idleDelay, [this] {
        if (isRunning() && !current_) { halt(); }
    });
}

void PlaybackEngine::halt() {
    stream_->pause();
    watch_->setRunning(false);
    publisher_.forgetPrevious();
}

}  // namespace brindlehum
