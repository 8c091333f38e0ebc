// DragExport: what a drag out of the player delivers.
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

// The rendered forms (beds, upmixes, binaural) join when the exporter lands.
enum class DragExport { original };

std::string id(DragExport mode);
std::string name(DragExport mode);

// The drag out of the player: what is offered, what is chosen, and the file. Main thread.
class DragOut : public QObject {
    Q_OBJECT
public:
    DragOut(const LoadedSound& sound, const Transport& transport, PlayerMessage& message)
        : sound_(sound), transport_(transport), message_(message) {}

    std::vector<DragExport> dragOptions() const { return {DragExport::original}; }
    DragExport dragExport() const { return mode_; }
    void setDragExport(DragExport mode);
    // Falls back to the original when the loaded sound no longer offers what was chosen.
    void checkDragExport();
    // The file to hand over in a drag; none (and a message) when it can't be made.
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
