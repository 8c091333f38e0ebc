// Transport: starts and stops, and restarts a running stream when its settings change.
#include "mix/player/transport.h"

#include <algorithm>
#include <atomic>

#include "audio/stream/file_source.h"
#include "base/path.h"
#include "base/time_text.h"
#include "mix/player/prefilled_stream.h"

namespace brindlehum {

namespace {

constexpr double tickSeconds = 1.0 / 30;

}  // namespace

std::unique_ptr<FrameSource> Transport::openFile(const std::filesystem::path& path, const std::function<bool()>& stop) {
    return std::make_unique<FileSource>(path, stop);
}

Transport::Transport(EngineSeat& seat, DiskWork& loader, MainLoop& loop, LoadedSound& sound, ListeningSetup& listening,
                     PlayerMessage& message, OpenSource open)
    : seat_(seat),
      loader_(loader),
      mainLoop_(loop),
      sound_(sound),
      listening_(listening),
      message_(message),
      notice_(seat.engine(), message),
      open_(std::move(open)),
      route_(routeNow()) {}

void Transport::play(std::optional<int64_t> from) {
    // While a file is being loaded, the sound that it replaces never starts again.
    if (sound_.playOnceLoaded()) { return; }
    const auto& info = sound_.info();
    if (!info || !sound_.source()) { return; }
    seat_.take();
    if (!openDevice(false)) { return; }
    message_.clear();
    listening_.publish();
    sound_.check();
    startStream(playSpan(from.value_or(cueFrame_), selection_, info->frames));
}

// Returns false, after showing a message and going to rest, when no device can be opened.
bool Transport::openDevice(bool force, const std::string& failurePrefix) {
    route_ = routeNow();
    try {
        seat_.configure(route_.profile.deviceUID, force);
        return true;
    } catch (const std::exception& error) {
        stop();
        message_.fail(failurePrefix + error.what());
        return false;
    }
}

void Transport::startStream(const PlaySpan& span) {
    starting_ = span.start;
    const double rate = seat_.engine().sampleRate();
    const auto work = [open = open_, path = sound_.info()->url, rate, span,
                       loop = loops_](const Background::Task& task) {
        // A later start cancels the opening, but not the reads of a stream that has been opened and plays.
        const auto isOpening = std::make_shared<std::atomic<bool>>(true);
        const auto stop = [token = task.token(), isOpening] { return *isOpening && token.stop_requested(); };
        auto reader = prefilledStream(open(path, stop), rate, span, loop, stop);
        *isOpening = false;
        return reader;
    };
    loader_.queue().run(
        starts_, work,
        [this, rate, span](std::shared_ptr<StreamReader> reader) { streamReady(std::move(reader), span.start, rate); },
        [this](const std::exception& error) {
            starting_.reset();
            message_.fail(error.what());
        });
}

void Transport::streamReady(std::shared_ptr<StreamReader> reader, int64_t start, double rate) {
    starting_.reset();
    if (!listening_.isDeviceOpen() || seat_.engine().sampleRate() != rate) { return play(start); }
    stream_ = reader;
    try {
        seat_.play(std::move(reader), double(start));
    } catch (const std::exception& error) {
        stop();
        return message_.fail(error.what());
    }
    isPlaying_ = true;
    playhead_.setFrame(double(start));
    timer_ = mainLoop_.every(tickSeconds, [this] { tick(); });
    Q_EMIT changed();
}

void Transport::rest() {
    starts_.cancel();
    starting_.reset();
    timer_.reset();
    if (std::exchange(isPlaying_, false)) { Q_EMIT changed(); }
}

void Transport::stop() {
    seat_.stop();
    rest();
}

void Transport::returnPlayhead() {
    playhead_.setFrame(double(selection_ ? selection_->lower : cueFrame_));
}

void Transport::stopAndReturn() {
    stop();
    returnPlayhead();
}

void Transport::seatLost() {
    rest();
    returnPlayhead();
}

void Transport::reset() {
    stop();
    selection_.reset();
    cueFrame_ = 0;
    playhead_.setFrame(0);
    Q_EMIT changed();
}

void Transport::fileReplaced() {
    const auto frame = resumeFrame();
    stop();
    const auto& info = sound_.info();
    if (selection_) { selection_ = validSelection(*selection_, info->frames, info->sampleRate); }
    cueFrame_ = std::clamp<int64_t>(cueFrame_, 0, std::max<int64_t>(info->frames - 1, 0));
    returnPlayhead();
    Q_EMIT changed();
    if (frame) { play(frame); }
}

void Transport::togglePlay() {
    if (isPlaying_ || starting_) {
        stopAndReturn();
    } else {
        play(std::nullopt);
    }
}

void Transport::tick() {
    if (!isPlaying_) { return; }
    playhead_.setFrame(seat_.engine().ctx().position());
    if (!seat_.engine().finished()) { return; }
    const auto stream = stream_.lock();
    const std::optional<int64_t> broken = stream ? stream->brokenOffAt() : std::nullopt;
    stopAndReturn();
    const auto& info = sound_.info();
    if (!broken || !info) { return; }
    message_.fail(printableName(info->url) + " can't be read any further than " +
                  timeText(double(*broken) / info->sampleRate));
}

void Transport::seek(int64_t frame) {
    const auto& info = sound_.info();
    if (!info) { return; }
    frame = std::clamp<int64_t>(frame, 0, std::max<int64_t>(info->frames - 1, 0));
    if (selection_ && !selection_->contains(frame)) { selection_.reset(); }
    cueFrame_ = frame;
    playhead_.setFrame(double(frame));
    Q_EMIT changed();
    play(frame);
}

void Transport::select(std::optional<FrameRange> range) {
    const auto& info = sound_.info();
    selection_ = range && info ? validSelection(*range, info->frames, info->sampleRate) : std::nullopt;
    if (selection_) { cueFrame_ = selection_->lower; }
    Q_EMIT changed();
    if (selection_) { play(selection_->lower); }
}

void Transport::clearSelection() {
    selection_.reset();
    Q_EMIT changed();
    if (const auto frame = resumeFrame()) { play(frame); }
}

void Transport::setLoop(bool loop) {
    if (loop == loops_) { return; }
    loops_ = loop;
    Q_EMIT changed();
    if (const auto frame = resumeFrame()) { play(frame); }
}

std::optional<int64_t> Transport::resumeFrame() const {
    if (starting_) { return starting_; }
    return isPlaying_ ? std::optional(currentFrame()) : std::nullopt;
}

void Transport::profileChanged() {
    if (routeNow() == route_ || !seat_.takeIfFree()) { return; }
    const auto frame = resumeFrame();
    if (!openDevice(false)) { return; }
    if (frame) {
        play(frame);
    } else {
        listening_.publish();
    }
    Q_EMIT changed();
}

void Transport::deviceChanged() {
    const auto frame = resumeFrame();
    const AudioOutputDevice before = seat_.engine().device();
    stop();
    notice_.withdraw();
    if (!openDevice(true, "Output device changed: ")) { return; }
    if (frame) {
        play(frame);
    } else {
        listening_.publish();
    }
    notice_.tell(before);
    Q_EMIT changed();
}

}  // namespace brindlehum
