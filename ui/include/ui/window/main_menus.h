// The menu bar of the main window: each entry calls one operation or binds one setting.
#pragma once

#include "app/app_model.h"

namespace brindlehum {

class MainWindow;

// The shortcuts hold while the window has the keyboard.
void fillMenuBar(MainWindow& window, AppModel& model);

}  // namespace brindlehum
