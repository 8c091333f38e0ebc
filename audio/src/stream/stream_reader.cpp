// StreamReader: moves the source into the ring, block by block.
#include "audio/stream/stream_reader.h"

#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <new>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include "base/error.h"

namespace brindlehum {

namespace {

constexpr int blockFrames = 4096;
constexpr int maxChannels = 64;
constexpr double queuedSeconds = 1.5;
constexpr double minRingRate = 44100;  // Hz: slower devices get as many frames as at this rate
constexpr double equalRates = 0.5;     // Hz
constexpr auto idleTime = std::chrono::milliseconds(4);

mn_ring* makeRing(int channels, double outputRate, StreamReader::Use use) {
    if (use == StreamReader::Use::lockstep) { return mn_ring_create(channels, 2 * blockFrames); }
    const double frames = std::floor(std::max(minRingRate, outputRate) * queuedSeconds);
    if (!(frames <= std::numeric_limits<int32_t>::max())) { return nullptr; }
    return mn_ring_create(channels, int32_t(frames));
}

// Raises the thread's priority above the interface and the loaders. A refusal (usual without a grant) isn't audible,
// since the ring holds more than a second.
void raisePriority() {
    constexpr int niceness = -11;
    pthread_setname_np(pthread_self(),
                       "Brindlehum.Stre");  // "Brindlehum.StreamReader" cut to the system's 15 characters
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), niceness);
}

}  // namespace

void StreamReader::Planes::allocate(int channels) {
    samples.resize(size_t(channels) * blockFrames);
    for (int channel = 0; channel < channels; ++channel) {
        planes.push_back(samples.data() + ptrdiff_t(channel) * blockFrames);
    }
}

StreamReader::StreamReader(std::unique_ptr<FrameSource> source, double outputRate, int64_t start, int64_t end,
                           bool loop, int64_t loopStart, int64_t loopEnd, Use use)
    : source_(std::move(source)) {
    const ProcessingFormat format = source_->processingFormat();
    channels_ = format.channels;
    if (channels_ < 1 || channels_ > maxChannels) {
        throw Error(ErrorKind::channelCount, "Unsupported channel count (" + std::to_string(channels_) + ")");
    }
    const int64_t length = source_->length();
    endFrame_ = std::max<int64_t>(std::min(length, end), 0);
    loopStart_ = std::max<int64_t>(loopStart, 0);
    loopEnd_ = std::min(length, loopEnd);
    loop_ = loop && loopStart_ < loopEnd_;
    filePos_ = std::clamp<int64_t>(start, 0, endFrame_);
    if (loop_ && filePos_ >= loopEnd_) { filePos_ = loopStart_; }
    ratio_ = format.sampleRate / outputRate;
    virtualPos_ = double(filePos_) - ratio_;
    ring_.reset(makeRing(channels_, outputRate, use));
    if (!ring_) { throw Error(ErrorKind::ring, ""); }
    const bool converts = !(std::abs(format.sampleRate - outputRate) <= equalRates);  // also for NaN
    try {
        in_.allocate(channels_);
        if (converts) { out_.allocate(channels_); }
        positions_.resize(blockFrames);
    } catch (const std::bad_alloc&) { throw Error(ErrorKind::conversionMemory, ""); }
    if (!converts) { return; }
    try {
        converter_ = std::make_unique<Resampler>(format.sampleRate, outputRate, channels_);
    } catch (const std::exception&) { throw Error(ErrorKind::resampling, "Can't resample this file"); }
}

StreamReader::~StreamReader() = default;

int StreamReader::read(int64_t limit) {
    return limit < 1 ? 0 : source_->read(in_.planes.data(), channels_, filePos_, int(limit));
}

// A block never crosses the loop's end: it stops there, and the next block begins at the loop's start.
StreamReader::Block StreamReader::readSource(int limit) {
    const int64_t hardEnd = loop_ ? loopEnd_ : endFrame_;
    if (loop_ && filePos_ >= hardEnd) { filePos_ = loopStart_; }
    int got = read(std::min<int64_t>(hardEnd - filePos_, limit));
    if (got < 1 && loop_) {
        // The source is shorter than it stated: end the loop here.
        filePos_ = loopStart_;
        got = read(std::min<int64_t>(hardEnd - filePos_, limit));
    }
    if (got < 1) { return {0, filePos_}; }
    const int64_t start = std::exchange(filePos_, filePos_ + got);
    return {got, start};
}

bool StreamReader::fillOnce() {
    return converter_ ? fillConverted() : fillPlain();
}

bool StreamReader::fillPlain() {
    const Block block = readSource(blockFrames);
    if (block.frames < 1) { return finish(); }
    for (int i = 0; i < block.frames; ++i) { positions_[size_t(i)] = double(block.start + i); }
    write(in_, block.frames);
    return true;
}

bool StreamReader::fillConverted() {
    const auto pull = [this](int limit, const float** planes) {
        const int got = readSource(std::min(limit, blockFrames)).frames;
        std::ranges::copy(in_.planes, planes);
        return got;
    };
    int got = 0;
    try {
        got = converter_->process(out_.planes.data(), blockFrames, pull);
    } catch (const std::exception&) {
        return finish();  // a converter failure ends the stream as a source that breaks off does
    }
    for (int i = 0; i < got; ++i) {
        virtualPos_ += ratio_;
        positions_[size_t(i)] = positionOf(virtualPos_);
    }
    write(out_, got);
    return got == blockFrames || finish();
}

double StreamReader::positionOf(double virtualPos) const {
    if (!loop_ || virtualPos < double(loopEnd_)) { return std::min(virtualPos, double(endFrame_)); }
    const auto start = double(loopStart_);
    return std::fmod(virtualPos - start, double(loopEnd_ - loopStart_)) + start;
}

void StreamReader::write(const Planes& block, int frames) {
    mn_ring_write(ring_.get(), block.planes.data(), positions_.data(), frames);
}

std::optional<int64_t> StreamReader::brokenOffAt() const {
    const std::lock_guard guard(lock_);
    return brokenOffAt_;
}

bool StreamReader::finish() {
    if (loop_ || filePos_ < endFrame_) {
        const std::lock_guard guard(lock_);
        brokenOffAt_ = filePos_;
    }
    mn_ring_set_eof(ring_.get());
    return false;
}

void StreamReader::start() {
    try {
        std::thread([self = shared_from_this()] { self->run(); }).detach();
    } catch (const std::system_error&) { throw Error(ErrorKind::ring, ""); }
}

void StreamReader::run() {
    raisePriority();
    while (!isCancelled() && mn_ring_eof(ring_.get()) == 0) {
        if (mn_ring_write_space(ring_.get()) < blockFrames) {
            std::this_thread::sleep_for(idleTime);
        } else if (!fillOnce()) {
            return;
        }
    }
}

void StreamReader::cancel() {
    const std::lock_guard guard(lock_);
    cancelled_ = true;
}

bool StreamReader::isCancelled() const {
    const std::lock_guard guard(lock_);
    return cancelled_;
}

}  // namespace brindlehum
