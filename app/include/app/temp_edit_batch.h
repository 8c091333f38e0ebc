// TempEditBatch: the temp edits of a list of files, made in the background while the player goes on.
#pragma once

#include <QObject>
#include <filesystem>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "edits/temp_edits.h"
#include "mix/player/player_model.h"
#include "platform/desktop.h"
#include "platform/main_loop.h"
#include "platform/task_queues.h"
#include "settings/settings_store.h"

namespace brindlehum {

// Main thread. A batch that is asked for while one runs waits for its turn.
class TempEditBatch : public QObject {
    Q_OBJECT
public:
    struct Skipped {
        std::filesystem::path file;
        std::string reason;  // one line
    };

    // Progress is told as the player's message.
    TempEditBatch(PlayerModel& player, const SettingsStore& settings, Desktop& desktop, MainLoop& loop);
    // Ends the batch in hand before its next edit.
    ~TempEditBatch() override;

    // Makes the edits of those of the files that are audio, each into a folder of its own; nothing when none is.
    void start(const std::vector<std::filesystem::path>& files);
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

    // Where the work runs; tests drain it.
    SerialQueue& queue() { return queue_; }

Q_SIGNALS:
    void changed();

private:
    struct Work;
    static void run(const std::shared_ptr<Work>& work);
    void conclude(const Work& work, const std::vector<TempEdits::Outcome>& outcomes);

    PlayerModel& player_;
    const SettingsStore& settings_;
    Desktop& desktop_;
    MainLoop& loop_;
    std::optional<double> progress_;
    std::vector<std::filesystem::path> folders_;
    std::vector<Skipped> skipped_;
    std::string closing_;
    std::stop_source stop_;
    int batches_ = 0;  // running or waiting
    SerialQueue queue_{"Brindlehum.edits"};
};

}  // namespace brindlehum
