// DragExport: the kinds of file that a drag out of the player delivers.
#pragma once

#include <QObject>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "mix/player/loaded_sound.h"
#include "mix/player/player_message.h"
#include "mix/player/transport.h"

namespace brindlehum {

// Only the original so far; the rendered forms (beds, upmixes, binaural) need the exporter.
enum class DragExport { original };

std::string id(DragExport mode);
std::string name(DragExport mode);

// The drag out of the player: the forms on offer, the chosen one, and its file. Main thread.
class DragOut : public QObject {
    Q_OBJECT
public:
    DragOut(const LoadedSound& sound, const Transport& transport, PlayerMessage& message)
        : sound_(sound), transport_(transport), message_(message) {}

    std::vector<DragExport> dragOptions() const { return {DragExport::original}; }
    DragExport dragExport() const { return mode_; }
    void setDragExport(DragExport mode);
    // Falls back to the original when the loaded sound no longer offers the chosen form.
    void checkDragExport();
    // The file to hand over in a drag. Returns none, and shows a message, when it can't be made.
    std::optional<std::filesystem::path> exportForDrag(bool selectionOnly);

Q_SIGNALS:
    void changed();

private:
    const LoadedSound& sound_;
    const Transport& transport_;
    PlayerMessage& message_;
    DragExport mode_ = DragExport::original;
};

}  // namespace brindlehum
