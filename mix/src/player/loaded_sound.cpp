// LoadedSound: probes on the loader's queue, reads the waveform on the pool.
#include "mix/player/loaded_sound.h"

#include <QPointer>

#include "mix/player/lane_labels.h"

namespace brindlehum {

LoadedSound::LoadedSound(Background& loader, MainLoop& loop, WorkerPool& pool)
    : loader_(loader), loop_(loop), pool_(pool) {}

LoadedSound::~LoadedSound() {
    cancelWaveform();
}

std::optional<SourceFormat> LoadedSound::source() const {
    if (!info_) { return std::nullopt; }
    return formatOverride_ ? *formatOverride_ : info_->detected;
}

std::vector<std::string> LoadedSound::laneLabels() const {
    const auto format = source();
    return format ? brindlehum::laneLabels(*format, info_->channels) : std::vector<std::string>();
}

void LoadedSound::load(const std::filesystem::path& path, bool autoPlay) {
    loads_.cancel();
    if (info_ && info_->url == path) {
        loadWaveform();
        if (autoPlay) { Q_EMIT playAsked(); }
        return;
    }
    autoPlay_ = autoPlay;
    cancelWaveform();
    Q_EMIT replacing();
    loader_.run(
        loads_,
        [path](const Background::Task& task) {
            return AudioFileInfo::load(path, [token = task.token()] { return token.stop_requested(); });
        },
        [this](AudioFileInfo info) { didLoad(std::move(info)); },
        [this, path](const std::exception&) {
            // Show one text for all reasons; the previous sound is still loaded.
            loadWaveform();
            Q_EMIT failed("Can't read " + path.filename().string());
        });
}

bool LoadedSound::playOnceLoaded() {
    if (!loads_.isBusy()) { return false; }
    return autoPlay_ = true;
}

void LoadedSound::didLoad(AudioFileInfo info) {
    info_ = std::move(info);
    const bool hadOverride = formatOverride_.has_value();
    formatOverride_.reset();
    waveform_ = nullptr;
    Q_EMIT replaced();
    if (hadOverride) { Q_EMIT sourceChanged(); }
    loadWaveform();
    Q_EMIT changed();
    if (autoPlay_) { Q_EMIT playAsked(); }
}

// Takes the waveform from the cache, or starts to read it unless it is already complete or being read.
void LoadedSound::loadWaveform() {
    if (!info_ || (waveform_ && waveform_->isComplete()) || waveLoader_) { return; }
    auto cached = WaveformCache::shared().get(info_->url);
    if (cached && cached->isComplete()) {
        waveform_ = std::move(cached);
        return;
    }
    const auto path = info_->url;
    auto update = [self = QPointer(this), path](const WaveformPtr& data) {
        if (!self || !self->info_ || self->info_->url != path) { return; }
        self->waveform_ = data;
        if (data->isComplete()) { WaveformCache::shared().set(path, data); }
        Q_EMIT self->changed();
    };
    waveLoader_ = WaveformLoader::load(
        path, update, [&pool = pool_](auto job) { pool.async(std::move(job)); },
        [&loop = loop_](auto job) { loop.post(std::move(job)); });
}

void LoadedSound::cancelWaveform() {
    if (waveLoader_) { waveLoader_->cancel(); }
    waveLoader_.reset();
}

void LoadedSound::setFormatOverride(std::optional<SourceFormat> format) {
    if (format == formatOverride_) { return; }
    formatOverride_ = std::move(format);
    Q_EMIT sourceChanged();
    Q_EMIT changed();
}

}  // namespace brindlehum
