// DragOut: the drag out of the player: the forms on offer, the chosen one, and the export behind it.
#pragma once

#include <QObject>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "mix/export/export_job.h"
#include "mix/player/export_progress.h"
#include "mix/player/listening_setup.h"
#include "mix/player/loaded_sound.h"
#include "mix/player/player_message.h"
#include "mix/player/transport.h"

namespace brindlehum {

// Main thread.
class DragOut : public QObject {
    Q_OBJECT
public:
    // How long a drop may block the program for a file that isn't finished.
    static constexpr double patienceSeconds = 4;

    DragOut(const LoadedSound& sound, const Transport& transport, const ListeningSetup& listening,
            const SettingsStore& settings, const FormatOverrides& formats, PlayerMessage& message, MainLoop& loop);

    std::vector<DragExport> dragOptions() const;
    DragExport dragExport() const { return mode_; }
    void setDragExport(DragExport mode);
    // As menus call a form, with the preset of an upmix: "7.1.4 upmix (Film)".
    std::string formName(const DragExport& mode) const;
    // Falls back to the original when the loaded sound no longer offers the chosen form.
    void checkDragExport();

    // What would be exported now: of the selection, or of all of the sound; none without a sound.
    std::optional<Exporter::Request> request(bool selectionOnly) const;
    // Begins to export it, without a word and without a file to be seen: a drag may yet come of the press. The caller
    // keeps the job or lets it go. None without a sound. The same request again gets the same job, which keeps its
    // finished file.
    std::shared_ptr<ExportJob> startExport(bool selectionOnly);
    // The same of any file, as if it were loaded, and in the chosen form where that is on offer for it; else the file
    // itself. It is probed on the export's thread.
    std::shared_ptr<ExportJob> startExport(const std::filesystem::path& file);
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

Q_SIGNALS:
    void changed();

private:
    Exporter::Request unbound() const;

    const LoadedSound& sound_;
    const Transport& transport_;
    const ListeningSetup& listening_;
    const SettingsStore& settings_;
    const FormatOverrides& formats_;
    int readings_ = 0;  // changes of what formats_ says
    PlayerMessage& message_;
    DragExport mode_;
    ExportQueue queue_;
    ExportProgress progress_;
};

}  // namespace brindlehum
