// LoadedSound: the file on the player, its channel layout, and its waveform.
#pragma once

#include <QObject>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "audio/probe/audio_file_info.h"
#include "audio/wave/waveform.h"
#include "base/file_version.h"
#include "mix/player/wave_detail.h"
#include "platform/disk_work.h"
#include "settings/format_overrides.h"

namespace brindlehum {

// Who asked for a sound: what shows where it lies need not follow a walk through the file manager.
enum class AskedBy : uint8_t { anyone, fileManager };

// Main thread. The file is probed on the loader's queue; a newer load replaces an older one. The previous sound stays
// loaded until the probe succeeds, and when it fails.
class LoadedSound : public QObject {
    Q_OBJECT
public:
    // `pool` reads the waveform.
    LoadedSound(DiskWork& loader, MainLoop& loop, WorkerPool& pool, FormatOverrides& formats);
    ~LoadedSound() override;

    const std::optional<AudioFileInfo>& info() const { return info_; }
    WaveformPtr waveform() const { return waveform_; }  // null, then growing snapshots, then the complete one
    WaveDetail& detail() { return detail_; }
    const std::optional<SourceFormat>& formatOverride() const { return formatOverride_; }
    std::optional<SourceFormat> source() const;  // the override, else the detected format; none without a file
    std::vector<std::string> laneLabels() const;
    AskedBy askedBy() const { return askedBy_; }  // for the loaded sound

    // Loads the file, and emits playAsked with `autoPlay`. A file that is loaded already is only checked.
    void load(const std::filesystem::path& path, bool autoPlay, AskedBy by = AskedBy::anyone);
    // Reads the loaded file again if another file, or another version of it, has come to its path.
    void check();
    // The file has a new name: keeps it loaded, and playing.
    void rename(const std::filesystem::path& from, const std::filesystem::path& to);
    // Handles a start while another file is being probed: plays that file once it is loaded, instead of the sound that
    // it replaces. Returns false when no file is being probed.
    bool playOnceLoaded();
    // Remembered for the file, also for later runs; none restores the detected format.
    void setFormatOverride(std::optional<SourceFormat> format);
    // The override that the loaded file's folder has for files of as many channels; none without one.
    std::optional<SourceFormat> folderOverride() const;
    // Remembers the override in force for the folder, and lets the file follow it; or forgets the folder's, and keeps
    // that of the file.
    void setForFolder(bool forFolder);

Q_SIGNALS:
    void changed();
    void replacing();      // another file has been asked for
    void replaced();       // it is loaded now
    void fileReplaced();   // the same path, but with other facts
    void sourceChanged();  // the override of the loaded sound has been set, changed or cleared
    void playAsked();      // the sound is loaded, and its load asked to play it
    void failed(const std::string& text);

private:
    struct Probe {
        AudioFileInfo info;
        FileVersion version;
    };
    static Probe probe(const std::filesystem::path& path, const Background::Task& task);
    void didLoad(Probe probe, AskedBy by);
    void showOverride(std::optional<SourceFormat> format);
    void didCheck(std::optional<Probe> found);
    WaveDetail::Open openDetail() const;
    void loadWaveform();
    void cancelWaveform();

    DiskWork& loader_;
    MainLoop& loop_;
    WorkerPool& pool_;
    FormatOverrides& formats_;
    std::optional<AudioFileInfo> info_;
    WaveformPtr waveform_;
    WaveDetail detail_;
    std::optional<SourceFormat> formatOverride_;
    std::shared_ptr<WaveformLoader> waveLoader_;
    FileVersion version_;           // of the loaded file
    std::filesystem::path newest_;  // the file that was asked for last
    bool autoPlay_ = false;         // of the newest load
    AskedBy newestBy_ = AskedBy::anyone;
    AskedBy askedBy_ = AskedBy::anyone;
    Background::Line loads_;
    Background::Line checks_;
};

}  // namespace brindlehum
