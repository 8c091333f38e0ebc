// PullSource: something whose sound can be taken out as a file, by a drag, a copy or an export.
#pragma once

#include <QObject>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "mix/export/export_job.h"
#include "mix/player/export_progress.h"
#include "mix/player/player_message.h"

namespace brindlehum {

// Main thread.
class PullSource : public QObject {
    Q_OBJECT
public:
    // How long a drop may block the program for a file that isn't finished.
    static constexpr double patienceSeconds = 4;

    // Says in the message how exports have gone.
    PullSource(PlayerMessage& message, MainLoop& loop);

    // What would be exported now: of the selection, or of all of the sound; none without a sound.
    virtual std::optional<Exporter::Request> request(bool selectionOnly) const = 0;
    // Begins to export it, without a word and without a file to be seen: a drag may yet come of the press. The caller
    // keeps the job or lets it go. None without a sound. The same request again gets the same job, which keeps its
    // finished file.
    virtual std::shared_ptr<ExportJob> startExport(bool selectionOnly);
    // Of the form that it is exported in, to stand under a drag.
    virtual std::string formName() const = 0;
    // Keeps the job and waits for its file. None, and a message, when it can't be made or takes longer than the
    // patience: the export then goes on, and its file is there for the next drag.
    std::optional<std::filesystem::path> awaitFile(const std::shared_ptr<ExportJob>& job,
                                                   double patience = patienceSeconds);
    // Both at once.
    std::optional<std::filesystem::path> exportForDrag(bool selectionOnly);
    // Exports in the background, and says when the file is there.
    void exportToPulls(bool selectionOnly);

    ExportQueue& queue() { return queue_; }
    ExportProgress& progress() { return progress_; }

private:
    PlayerMessage& message_;
    ExportQueue queue_;
    ExportProgress progress_;
};

}  // namespace brindlehum
