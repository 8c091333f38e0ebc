// The menu bar of the main window: each entry calls one operation or binds one setting.
#pragma once

namespace brindlehum {

class AppModel;
class MainWindow;

// The shortcuts work while the window has the keyboard.
void fillMenuBar(MainWindow& window, AppModel& model);

}  // namespace brindlehum
