// DragOut: the drag out of the player: the forms on offer, the chosen one, and the export behind it.
#pragma once

#include <QObject>
#include <filesystem>
#include <memory>
#include <optional>
#include <vector>

#include "mix/player/listening_setup.h"
#include "mix/player/loaded_sound.h"
#include "mix/player/pull_source.h"
#include "mix/player/transport.h"

namespace brindlehum {

// Main thread.
class DragOut : public PullSource {
    Q_OBJECT
public:
    DragOut(const LoadedSound& sound, const Transport& transport, const ListeningSetup& listening,
            const SettingsStore& settings, const FormatOverrides& formats, PlayerMessage& message, MainLoop& loop);

    std::vector<DragExport> dragOptions() const;
    DragExport dragExport() const { return mode_; }
    void setDragExport(DragExport mode);
    // As menus call a form, with the preset of an upmix: "7.1.4 upmix (Film)".
    std::string formName(const DragExport& mode) const;
    // Falls back to the original when the loaded sound no longer offers the chosen form.
    void checkDragExport();

    std::optional<Exporter::Request> request(bool selectionOnly) const override;
    std::string formName() const override { return formName(mode_); }
    using PullSource::startExport;
    // Begins to export any file, as if it were loaded, and in the chosen form where that is on offer for it; else the
    // file itself. It is probed on the export's thread.
    std::shared_ptr<ExportJob> startExport(const std::filesystem::path& file);

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
    DragExport mode_;
};

}  // namespace brindlehum
