// SourceBar: how the file is read, how it is listened to, where it plays, and the way out of the program.
#pragma once

#include <QWidget>

#include "mix/player/player_model.h"

namespace brindlehum {

class DragHandle;
class ElidedLabel;
class MenuButton;

class SourceBar : public QWidget {
    Q_OBJECT
public:
    explicit SourceBar(PlayerModel& player, QWidget* parent = nullptr);
    void refresh();
    // Icons alone, and no device.
    void setNarrow(bool narrow);
    DragHandle& dragHandle() { return *handle_; }

private:
    void fillFormats(QMenu& menu);
    void fillListen(QMenu& menu);
    void fillProfiles(QMenu& menu);
    void fillDrag(QMenu& menu);
    void refreshDevice();

    // What the name of the device in use depends on.
    struct DeviceKey {
        std::optional<std::string> uid;
        bool configured = false;
        bool playing = false;
        bool operator==(const DeviceKey&) const = default;
    };
    PlayerModel& player_;
    MenuButton* format_;
    MenuButton* listen_;
    MenuButton* profile_;
    ElidedLabel* device_;
    MenuButton* drag_;
    DragHandle* handle_;
    std::optional<DeviceKey> shownFor_;
};

// The names of the listen menu.
QString listenName(ListenMode mode);

}  // namespace brindlehum
