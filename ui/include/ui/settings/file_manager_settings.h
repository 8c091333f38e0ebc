// FileManagerSettings: what happens to the selection and the Space key of the user's file manager.
#pragma once

#include <QWidget>

namespace brindlehum {

class SettingsStore;

class FileManagerSettings : public QWidget {
    Q_OBJECT
public:
    // `isWatched`: this desktop says what the file manager shows; false on Wayland.
    FileManagerSettings(SettingsStore& settings, bool isWatched);
};

}  // namespace brindlehum
