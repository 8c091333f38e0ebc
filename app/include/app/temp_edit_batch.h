// TempEditBatch: makes the temp edits of a list of files in the background, so that the player stays usable.
#pragma once

#include <QObject>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "app/bars_by_hand.h"
#include "edits/temp_edits.h"
#include "mix/player/player_model.h"
#include "platform/background.h"
#include "platform/session.h"
#include "settings/settings_store.h"

namespace brindlehum {

// Main thread. A batch that starts while another runs waits for its turn.
class TempEditBatch : public QObject {
    Q_OBJECT
public:
    struct Skipped {
        std::filesystem::path file;
        std::string reason;  // one line
    };

    // Shows its progress as the player's message. Works on `queue`, which all share that write temp edits.
    TempEditBatch(PlayerModel& player, const SettingsStore& settings, const BarsByHand& bars, FileManager& fileManager,
                  MainLoop& loop, std::shared_ptr<SerialQueue> queue);

    // Makes the edits of the audio files among `files`, each in its own folder; does nothing if there are none.
    void make(const std::vector<std::filesystem::path>& files);
    // Stops the running batch and drops the waiting ones. Keeps the finished files.
    void cancel();
    // Before the process ends: cancels and waits, for up to `patience` seconds, until no file is half written.
    void finish(double patience);
    // Shows the folders of the last batch in the file manager.
    void showFolders();

    // Progress of the running batch, 0 to 1; none when nothing runs.
    std::optional<double> progress() const { return progress_; }
    // Results of the last batch.
    const std::vector<std::filesystem::path>& folders() const { return folders_; }
    const std::vector<Skipped>& skipped() const { return skipped_; }
    // Files whose edits may be cut on the wrong beat.
    const std::vector<std::filesystem::path>& uncertain() const { return uncertain_; }
    const std::string& closing() const { return closing_; }  // its final message

Q_SIGNALS:
    void changed();

private:
    struct Result {
        std::vector<TempEdits::Outcome> outcomes;
        bool wasCancelled = false;
    };
    using Jobs = std::vector<TempEdits::Job>;
    Result makeAll(const Jobs& jobs, const Background::Task& task);
    void show(double progress, const std::optional<std::string>& message);
    void conclude(const Jobs& jobs, const Result& result);

    PlayerModel& player_;
    const SettingsStore& settings_;
    const BarsByHand& bars_;
    FileManager& fileManager_;
    std::optional<double> progress_;
    std::vector<std::filesystem::path> folders_;
    std::vector<Skipped> skipped_;
    std::vector<std::filesystem::path> uncertain_;
    std::string closing_;
    Background background_;
};

}  // namespace brindlehum
