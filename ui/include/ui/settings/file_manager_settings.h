// FileManagerSettings: what happens to the selection and the Space key of the user's file manager.
#pragma once

#include <QWidget>

namespace brindlehum {

class SettingsStore;

class FileManagerSettings : public QWidget {
    Q_OBJECT
public:
    // `seesWindows`: this desktop says where windows are; false on Wayland.
    FileManagerSettings(SettingsStore& settings, bool seesWindows);
};

}  // namespace brindlehum
