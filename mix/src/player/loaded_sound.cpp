// LoadedSound: probes on the loader's queue, reads the waveform on the pool.
#include "mix/player/loaded_sound.h"

#include <QPointer>

#include "audio/stream/file_source.h"
#include "base/path.h"
#include "mix/player/lane_labels.h"

namespace brindlehum {

LoadedSound::LoadedSound(DiskWork& loader, MainLoop& loop, WorkerPool& pool, FormatOverrides& formats)
    : loader_(loader), loop_(loop), pool_(pool), formats_(formats), detail_(loop) {}

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

void LoadedSound::load(const std::filesystem::path& path, bool autoPlay, AskedBy by) {
    loads_.cancel();
    checks_.cancel();
    newest_ = path;
    if (info_ && info_->url == path) {
        loadWaveform();
        check();
        if (autoPlay) { Q_EMIT playAsked(); }
        return;
    }
    autoPlay_ = autoPlay;
    newestBy_ = by;
    cancelWaveform();
    Q_EMIT replacing();
    loader_.queue().run(
        loads_, [path](const Background::Task& task) { return probe(path, task); },
        [this, by](Probe probe) { didLoad(std::move(probe), by); },
        [this, path](const std::exception& error) {
            loadWaveform();  // of the previous sound, which is still loaded
            Q_EMIT failed(readFailure(path, error));
        });
}

// Takes the version first: a file that changes while it is read is found changed by the next check.
LoadedSound::Probe LoadedSound::probe(const std::filesystem::path& path, const Background::Task& task) {
    const FileVersion version = FileVersion::of(path);
    return {AudioFileInfo::load(path, [token = task.token()] { return token.stop_requested(); }), version};
}

void LoadedSound::check() {
    if (!info_ || checks_.isBusy()) { return; }
    const auto path = info_->url;
    loader_.queue().run(
        checks_,
        [path, known = version_](const Background::Task& task) -> std::optional<Probe> {
            if (FileVersion::of(path) == known) { return std::nullopt; }
            return probe(path, task);
        },
        [this](std::optional<Probe> found) { didCheck(std::move(found)); },
        [this, path](const std::exception& error) { Q_EMIT failed(readFailure(path, error)); });
}

void LoadedSound::didCheck(std::optional<Probe> found) {
    if (!found) { return; }
    cancelWaveform();
    waveform_ = nullptr;
    version_ = found->version;
    const AudioFileInfo before = std::exchange(*info_, std::move(found->info));
    detail_.setSource(openDetail());
    if (info_->channels != before.channels) { formatOverride_ = formats_.find(info_->url, info_->channels); }
    const bool isAlike = info_->frames == before.frames && info_->channels == before.channels &&
                         info_->sampleRate == before.sampleRate && info_->detected == before.detected;
    if (!isAlike) { Q_EMIT fileReplaced(); }
    loadWaveform();
    Q_EMIT changed();
}

void LoadedSound::rename(const std::filesystem::path& from, const std::filesystem::path& to) {
    if (loads_.isBusy() && newest_ == from) { return load(to, autoPlay_, newestBy_); }
    if (!info_ || info_->url != from) { return; }
    checks_.cancel();
    if (waveform_ && waveform_->isComplete()) { WaveformCache::shared().set(to, version_, waveform_); }
    info_->url = to;
    detail_.moveSource(openDetail());
    Q_EMIT changed();
}

bool LoadedSound::playOnceLoaded() {
    if (!loads_.isBusy()) { return false; }
    return autoPlay_ = true;
}

void LoadedSound::didLoad(Probe probe, AskedBy by) {
    info_ = std::move(probe.info);
    askedBy_ = by;
    version_ = probe.version;
    const bool hadOverride = formatOverride_.has_value();
    formatOverride_ = formats_.find(info_->url, info_->channels);
    waveform_ = nullptr;
    detail_.setSource(openDetail());
    Q_EMIT replaced();
    if (hadOverride || formatOverride_) { Q_EMIT sourceChanged(); }
    loadWaveform();
    Q_EMIT changed();
    if (autoPlay_) { Q_EMIT playAsked(); }
}

WaveDetail::Open LoadedSound::openDetail() const {
    return [path = info_->url](const std::function<bool()>& stop) { return std::make_unique<FileSource>(path, stop); };
}

// Takes the waveform from the cache, or starts to read it unless it is already complete or being read.
void LoadedSound::loadWaveform() {
    if (!info_ || (waveform_ && waveform_->isComplete()) || waveLoader_) { return; }
    auto cached = WaveformCache::shared().get(info_->url, version_);
    if (cached && cached->isComplete()) {
        waveform_ = std::move(cached);
        return;
    }
    // A loader that has been cancelled, as for another file, sends no update.
    auto update = [self = QPointer(this)](const WaveformPtr& data) {
        if (!self || !self->info_) { return; }
        self->waveform_ = data;
        if (data->isComplete()) { WaveformCache::shared().set(self->info_->url, self->version_, data); }
        Q_EMIT self->changed();
    };
    waveLoader_ = WaveformLoader::load(
        info_->url, update, [&pool = pool_](auto job) { pool.async(std::move(job)); },
        [&loop = loop_](auto job) { loop.post(std::move(job)); });
}

void LoadedSound::cancelWaveform() {
    if (waveLoader_) { waveLoader_->cancel(); }
    waveLoader_.reset();
}

void LoadedSound::setFormatOverride(std::optional<SourceFormat> format) {
    if (!info_) { return; }
    formats_.setFile(info_->url, info_->channels, format);
    showOverride(std::move(format));
}

void LoadedSound::showOverride(std::optional<SourceFormat> format) {
    if (format == formatOverride_) { return; }
    formatOverride_ = std::move(format);
    Q_EMIT sourceChanged();
    Q_EMIT changed();
}

std::optional<SourceFormat> LoadedSound::folderOverride() const {
    return info_ ? formats_.findFolder(info_->url.parent_path(), info_->channels) : std::nullopt;
}

void LoadedSound::setForFolder(bool forFolder) {
    if (!info_ || !formatOverride_) { return; }
    formats_.setFolder(info_->url.parent_path(), info_->channels, forFolder ? formatOverride_ : std::nullopt);
    if (forFolder) {
        formats_.forgetFile(info_->url);
    } else {
        formats_.setFile(info_->url, info_->channels, formatOverride_);
    }
    Q_EMIT changed();
}

}  // namespace brindlehum
