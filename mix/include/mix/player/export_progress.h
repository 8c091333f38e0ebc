// ExportProgress: how far the exports under way are, and what the player says when they are over.
#pragma once

#include <QObject>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "mix/export/export_job.h"
#include "mix/player/player_message.h"

namespace brindlehum {

// Main thread. Exports that follow on one another without a pause are one round of work.
class ExportProgress : public QObject {
    Q_OBJECT
public:
    // An export that is shorter isn't worth a word.
    static constexpr double quietSeconds = 0.5;
    // What the user has wanted the files for.
    enum class Purpose { file, copy, nextDrag };

    ExportProgress(ExportQueue& queue, PlayerMessage& message, MainLoop& loop);

    // Of the round, 0 to 1; none while nothing is under way, or not for long enough.
    std::optional<double> progress() const;
    std::string caption() const;  // "Exporting rain_714.wav (2 of 5)…"
    void cancel();                // all that isn't done
    // Says how the job has gone once it is over, however short it was; at once if it is over already.
    void announce(const std::shared_ptr<ExportJob>& job, Purpose purpose);

    // The last thing said about a round, and its files, for a view that offers to show them beside that message.
    const std::string& closing() const { return closing_; }
    const std::vector<std::filesystem::path>& files() const { return files_; }

Q_SIGNALS:
    void changed();

private:
    void begin(const std::shared_ptr<ExportJob>& job);
    void note(const ExportJob& job);
    void end(const std::shared_ptr<ExportJob>& job);
    void close();
    void say(const std::string& text, const std::vector<std::filesystem::path>& files, bool isProblem);

    PlayerMessage& message_;
    MainLoop& loop_;
    std::vector<std::shared_ptr<ExportJob>> open_;  // in the order of asking
    size_t all_ = 0;                                // of the round
    std::optional<Purpose> purpose_;
    std::vector<std::filesystem::path> made_;  // by the round
    std::string problem_;                      // the last of the round, as is the next
    std::string remark_;
    bool isShown_ = false;
    TimerHandle patience_;
    std::string closing_;
    std::vector<std::filesystem::path> files_;
};

}  // namespace brindlehum
