#include "mix/player/player_model.h"

#include <QPointer>
#include <algorithm>
#include <cmath>

#include "audio/stream/file_source.h"
#include "base/error.h"
#include "mix/config/mix_builder.h"

namespace brindlehum {

namespace {

constexpr double tickSeconds = 1.0 / 30;
// Frames that a stream holds before it is published, so that its first block finds audio.
constexpr int prefillFrames = 8192;
constexpr int fillBlock = 4096;  // frames that one turn of the reader may write

// Opens the file and prefills the stream. Loader queue; throws Error.
std::shared_ptr<StreamReader> openStream(const std::filesystem::path& url, double rate, int64_t start, int64_t end,
                                         bool loop, int64_t low) {
    auto reader = std::make_shared<StreamReader>(std::make_unique<FileSource>(url), rate, start, end, loop, low, end);
    mn_ring* ring = reader->ring();
    while (mn_ring_available(ring) < prefillFrames && mn_ring_write_space(ring) >= fillBlock && reader->fillOnce()) {}
    return reader;
}

OutputProfile stereoOnEars(OutputProfile headphones) {
    headphones.kind = OutputProfile::Kind::speakers;
    headphones.layout = LayoutID::stereo;
    headphones.outputs = {headphones.headphoneLeft, headphones.headphoneRight};
    headphones.trimsDB.clear();
    return headphones;
}

}  // namespace

void PlayheadModel::setFrame(double frame) {
    if (frame == frame_) { return; }
    frame_ = frame;
    Q_EMIT frameChanged(frame);
}

PlayerModel::PlayerModel(PlaybackEngine& engine, SettingsStore& settings, MainLoop& loop, WorkerPool& pool)
    : engine_(engine), settings_(settings), loopSeam_(loop), pool_(pool), upmix_(settings.value().upmix) {
    engine_.onDeviceChange = [this] { deviceChanged(); };
    engine_.onBinauralMissing = [this] { applyConfig(); };
}

PlayerModel::~PlayerModel() {
    engine_.onDeviceChange = nullptr;
    engine_.onBinauralMissing = nullptr;
    cancelWaveform();
}

void PlayerModel::load(const std::filesystem::path& url, bool autoPlay) {
    const int64_t generation = ++loadGen_;
    if (info_ && info_->url == url) {
        loadWaveform();
        if (autoPlay && !isPlaying_) { play(std::nullopt); }
        return;
    }
    stopPlayback();
    cancelWaveform();
    selection_.reset();
    cueFrame_ = 0;
    playhead_.setFrame(0);
    message_.reset();
    Q_EMIT changed();
    queue_.async([self = QPointer(this), &loop = loopSeam_, url, autoPlay, generation] {
        std::optional<AudioFileInfo> info;
        try {
            info = AudioFileInfo::load(url);
        } catch (const std::exception&) {
            // The user reads one text for all reasons.
        }
        loop.post([self, url, autoPlay, generation, info = std::move(info)] {
            if (!self || self->loadGen_ != generation) { return; }
            if (info) {
                self->didLoad(*info, autoPlay);
            } else {
                self->loadFailed(url);
            }
        });
    });
}

void PlayerModel::didLoad(AudioFileInfo info, bool autoPlay) {
    info_ = std::move(info);
    const bool hadOverride = formatOverride_.has_value();
    formatOverride_.reset();
    if (hadOverride) { sourceChanged(); }
    checkDragExport();
    waveform_ = nullptr;
    loadWaveform();
    Q_EMIT changed();
    if (autoPlay) { play(std::nullopt); }
}

void PlayerModel::loadFailed(const std::filesystem::path& url) {
    loadWaveform();
    fail("Can't read " + url.filename().string());
}

// Takes the overview of the loaded file from the cache, or starts to read it when none is complete or under way.
void PlayerModel::loadWaveform() {
    if (!info_ || (waveform_ && waveform_->isComplete()) || waveLoader_) { return; }
    auto cached = WaveformCache::shared().get(info_->url);
    if (cached && cached->isComplete()) {
        waveform_ = std::move(cached);
        return;
    }
    const auto url = info_->url;
    auto update = [self = QPointer(this), url](const WaveformPtr& data) {
        if (!self || !self->info_ || self->info_->url != url) { return; }
        self->waveform_ = data;
        if (data->isComplete()) { WaveformCache::shared().set(url, data); }
        Q_EMIT self->changed();
    };
    waveLoader_ = WaveformLoader::load(
        url, update, [&pool = pool_](auto job) { pool.async(std::move(job)); },
        [&loop = loopSeam_](auto job) { loop.post(std::move(job)); });
}

void PlayerModel::cancelWaveform() {
    if (waveLoader_) { waveLoader_->cancel(); }
    waveLoader_.reset();
}

void PlayerModel::play(std::optional<int64_t> from) {
    if (!info_ || !source()) { return; }
    if (onWillPlay) { onWillPlay(); }
    try {
        engine_.configure(settings_.activeProfile().deviceUID, false);
    } catch (const std::exception& error) {
        stopPlayback();
        return fail(error.what());
    }
    int64_t start = from.value_or(cueFrame_);
    const FrameRange span = selection_.value_or(FrameRange{0, info_->frames});
    if ((selection_ && !span.contains(start)) || start >= span.upper) { start = span.lower; }
    message_.reset();
    publishConfig();
    startStream(start, span.upper, span.lower);
}

void PlayerModel::startStream(int64_t start, int64_t end, int64_t low) {
    const int64_t generation = ++playGen_;
    starting_ = start;
    queue_.async([self = QPointer(this), &main = loopSeam_, url = info_->url, rate = engine_.sampleRate(), start, end,
                  low, loop = loop_, generation] {
        std::shared_ptr<StreamReader> reader;
        std::string failure;
        try {
            reader = openStream(url, rate, start, end, loop, low);
        } catch (const std::exception& error) { failure = error.what(); }
        main.post([self, reader, failure, rate, start, generation] {
            // A newer intent has won: the reader goes with this job, its thread never started.
            if (!self || self->playGen_ != generation) { return; }
            self->starting_.reset();
            if (!reader) { return self->fail(failure); }
            self->streamReady(reader, start, rate);
        });
    });
}

void PlayerModel::streamReady(std::shared_ptr<StreamReader> reader, int64_t start, double rate) {
    if (!engine_.isConfigured() || engine_.sampleRate() != rate) { return play(start); }
    try {
        engine_.play(std::move(reader), double(start));
    } catch (const std::exception& error) {
        stopPlayback();
        return fail(error.what());
    }
    isPlaying_ = true;
    playhead_.setFrame(double(start));
    timer_ = loopSeam_.every(tickSeconds, [this] { tick(); });
    Q_EMIT changed();
}

void PlayerModel::stopPlayback() {
    ++playGen_;
    starting_.reset();
    engine_.stop();
    timer_.reset();
    if (!std::exchange(isPlaying_, false)) { return; }
    Q_EMIT changed();
}

void PlayerModel::returnPlayhead() {
    playhead_.setFrame(double(selection_ ? selection_->lower : cueFrame_));
}

void PlayerModel::stopAndReturn() {
    stopPlayback();
    returnPlayhead();
}

void PlayerModel::togglePlay() {
    if (isPlaying_) {
        stopAndReturn();
    } else {
        play(std::nullopt);
    }
}

void PlayerModel::tick() {
    if (!isPlaying_) { return; }
    playhead_.setFrame(engine_.ctx().position());
    if (engine_.finished()) { stopAndReturn(); }
}

void PlayerModel::seek(int64_t frame) {
    if (!info_) { return; }
    frame = std::clamp<int64_t>(frame, 0, std::max<int64_t>(info_->frames - 1, 0));
    if (selection_ && !selection_->contains(frame)) { selection_.reset(); }
    cueFrame_ = frame;
    playhead_.setFrame(double(frame));
    Q_EMIT changed();
    play(frame);
}

void PlayerModel::select(std::optional<FrameRange> range) {
    if (range && info_) {
        range->lower = std::clamp<int64_t>(range->lower, 0, info_->frames);
        range->upper = std::clamp<int64_t>(range->upper, range->lower, info_->frames);
    }
    const auto shortest = int64_t((info_ ? info_->sampleRate : 48000.0) * 0.01);  // 10 ms
    if (!range || range->length() <= shortest) {
        selection_.reset();
        Q_EMIT changed();
        return;
    }
    selection_ = range;
    cueFrame_ = range->lower;
    Q_EMIT changed();
    play(range->lower);
}

void PlayerModel::clearSelection() {
    selection_.reset();
    Q_EMIT changed();
    if (const auto frame = resumeFrame()) { play(frame); }
}

std::optional<int64_t> PlayerModel::resumeFrame() const {
    if (starting_) { return starting_; }
    return isPlaying_ ? std::optional(currentFrame()) : std::nullopt;
}

MixConfig PlayerModel::makeConfig(const OutputProfile& profile) const {
    // No upmix goes in: the processor that would run it isn't part of this build, and a configuration that names one
    // would be a matrix for planes that nobody makes. The user's choice is kept all the same, so that it is there
    // when the processor arrives.
    return MixBuilder::config(*source(), info_->channels, profile, engine_.deviceChannels(),
                              info_->channels == 2 ? listen_ : ListenMode::normal, rotation_,
                              settings_.value().monoToCenter, std::nullopt);
}

void PlayerModel::publishConfig() {
    const OutputProfile& profile = settings_.activeProfile();
    MixConfig config = makeConfig(profile);
    if (config.toBinaural && engine_.binauralMissing()) {
        // Something sensible on both ears serves better than silence.
        config = makeConfig(stereoOnEars(profile));
        fail("No HRTF set found: headphones play the stereo fold-down");
    }
    engine_.setConfig(config);
}

void PlayerModel::applyConfig() {
    if (engine_.isConfigured() && info_ && source()) { publishConfig(); }
}

void PlayerModel::checkDragExport() {
    const auto options = dragOptions();
    if (std::find(options.begin(), options.end(), dragExport_) == options.end()) { dragExport_ = DragExport::original; }
}

void PlayerModel::sourceChanged() {
    checkDragExport();
    applyConfig();
}

void PlayerModel::setLoop(bool loop) {
    if (loop == loop_) { return; }
    loop_ = loop;
    Q_EMIT changed();
    if (const auto frame = resumeFrame()) { play(frame); }
}

void PlayerModel::setFormatOverride(std::optional<SourceFormat> format) {
    if (format == formatOverride_) { return; }
    formatOverride_ = std::move(format);
    sourceChanged();
    Q_EMIT changed();
}

void PlayerModel::setListen(ListenMode mode) {
    if (mode == listen_) { return; }
    listen_ = mode;
    applyConfig();
    Q_EMIT changed();
}

void PlayerModel::setRotation(const Rotation& rotation) {
    if (rotation == rotation_) { return; }
    rotation_ = rotation;
    applyConfig();
    Q_EMIT changed();
}

void PlayerModel::setDragExport(DragExport mode) {
    if (mode == dragExport_) { return; }
    dragExport_ = mode;
    Q_EMIT changed();
}

void PlayerModel::setUpmix(const UpmixSettings& upmix) {
    if (upmix == upmix_) { return; }
    upmix_ = upmix;
    settings_.change([&](AppSettings& s) { s.upmix = upmix; });
    checkDragExport();
    applyConfig();
    Q_EMIT changed();
}

void PlayerModel::setVolumeDB(double db) {
    if (std::isnan(db) || db == volumeDB_) { return; }
    volumeDB_ = db;
    engine_.ctx().setGain(db <= -60 ? 0 : std::pow(10, db / 20));
    Q_EMIT changed();
}

void PlayerModel::selectProfile(const UUID& id) {
    if (settings_.value().activeProfileID == id) { return; }
    const int64_t generation = profileGen_;
    settings_.change([&](AppSettings& s) { s.activeProfileID = id; });
    // An observer of the settings may have called already.
    if (profileGen_ == generation) { profileChanged(); }
}

void PlayerModel::profileChanged() {
    ++profileGen_;
    const auto frame = resumeFrame();
    try {
        engine_.configure(settings_.activeProfile().deviceUID, false);
    } catch (const std::exception& error) {
        stopPlayback();
        return fail(error.what());
    }
    if (frame) {
        play(frame);
    } else {
        applyConfig();
    }
    Q_EMIT changed();
}

void PlayerModel::deviceChanged() {
    const auto frame = resumeFrame();
    stopPlayback();
    try {
        engine_.configure(settings_.activeProfile().deviceUID, true);
    } catch (const std::exception& error) { return fail(std::string("Output device changed: ") + error.what()); }
    if (frame) { play(frame); }
    Q_EMIT changed();
}

void PlayerModel::notify(std::string message) {
    message_ = std::move(message);
    messageIsProblem_ = false;
    Q_EMIT changed();
}

void PlayerModel::fail(std::string message) {
    message_ = std::move(message);
    messageIsProblem_ = true;
    Q_EMIT changed();
}

}  // namespace brindlehum
