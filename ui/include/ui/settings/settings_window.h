// SettingsWindow: the settings as forms; every change takes effect at once.
#pragma once

#include <QWidget>

#include <functional>

#include "library/model/library_model.h"
#include "mix/engine/audio_devices.h"

namespace brindlehum {

class SettingsWindow : public QWidget {
    Q_OBJECT
public:
    // `addFolder` lets the user choose folders for the library and adds them.
    SettingsWindow(LibraryModel& library, const AudioDevices& devices, std::function<void()> addFolder);
};

}  // namespace brindlehum
