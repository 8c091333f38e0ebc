// AppWindows: all surfaces of the application, kept for as long as it runs.
#pragma once

#include <memory>
#include <string>

namespace brindlehum {

class AppModel;
class MainWindow;
class SettingsWindow;
class StatusMenu;
class ThemeController;

// Main thread, with a QApplication. Sets the look of the application and keeps it resident when its last window
// closes. Construction fills the model's window actions, shows the status menu where the desktop has a place for it,
// and brings the main window up.
class AppWindows {
public:
    explicit AppWindows(AppModel& model);
    ~AppWindows();
    AppWindows(const AppWindows&) = delete;
    AppWindows& operator=(const AppWindows&) = delete;

    // Shows the window of this id, "main" or "settings", in front of the others; any other id does nothing.
    void open(const std::string& id);

private:
    AppModel& model_;
    std::unique_ptr<ThemeController> theme_;
    std::unique_ptr<MainWindow> main_;
    std::unique_ptr<SettingsWindow> settings_;  // made when first opened
    std::unique_ptr<StatusMenu> status_;
};

}  // namespace brindlehum
