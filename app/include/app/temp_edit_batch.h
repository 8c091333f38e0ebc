// TempEditBatch: the temp edits of a list of files, made in the background while the player goes on.
#pragma once

#include <QObject>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

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

    // Progress is shown as the player's message.
    TempEditBatch(PlayerModel& player, const SettingsStore& settings, FileManager& fileManager, MainLoop& loop);

    // Makes the edits of the audio files among `files`, each into a folder of its own; does nothing when there is none.
    void make(const std::vector<std::filesystem::path>& files);
    // Ends what runs and what waits. What is finished stays.
    void cancel();
    // Cancels and waits until nothing is half written any more, up to `patience` seconds: before the process ends.
    void finish(double patience);
    // Shows the folders of the last batch in the file manager.
    void showFolders();

    // How far the batch in hand has come, 0 to 1; none when nothing runs.
    std::optional<double> progress() const { return progress_; }
    // Of the last batch.
    const std::vector<std::filesystem::path>& folders() const { return folders_; }
    const std::vector<Skipped>& skipped() const { return skipped_; }
    const std::string& closing() const { return closing_; }  // the message in which it ended

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
    FileManager& fileManager_;
    std::optional<double> progress_;
    std::vector<std::filesystem::path> folders_;
    std::vector<Skipped> skipped_;
    std::string closing_;
    Background background_;
};

}  // namespace brindlehum
