// SettingsWindow: the settings as forms; every change is in force at once.
#pragma once

#include <QWidget>

#include "mix/audio_devices.h"
#include "settings/settings_store.h"

namespace brindlehum {

class SettingsWindow : public QWidget {
    Q_OBJECT
public:
    SettingsWindow(SettingsStore& settings, const AudioDevices& devices);
};

}  // namespace brindlehum
