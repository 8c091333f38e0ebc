// AppWindows: all windows and the status menu of the application, as long as it runs.
#pragma once

#include <memory>
#include <string>

namespace brindlehum {

class AppModel;
class EditorWindow;
class HUDController;
class MainWindow;
class ManualWindow;
class MonitorWindow;
class SettingsWindow;
class StatusMenu;
class ThemeController;
class WorksPage;

// Main thread, with a QApplication. Sets the application's look and keeps it running when its last window closes. The
// constructor sets the model's window actions, shows the status menu if the desktop has a tray, and opens the main
// window, unless the start is quiet: then no window opens by itself until the user opens one.
class AppWindows {
public:
    explicit AppWindows(AppModel& model, bool isQuiet = false);
    ~AppWindows();
    AppWindows(const AppWindows&) = delete;
    AppWindows& operator=(const AppWindows&) = delete;

    // Shows the window with this id, "main", "editor", "monitor", "manual", "settings" or "works" (a page of the
    // settings), in front of the others; ignores any other id.
    void open(const std::string& id);
    HUDController& hud() { return *hud_; }

private:
    EditorWindow& editor();
    void offerAbandoned();  // edits of a session that crashed
    AppModel& model_;
    bool isQuiet_;
    std::unique_ptr<ThemeController> theme_;
    std::unique_ptr<MainWindow> main_;
    std::unique_ptr<SettingsWindow> settings_;  // made when first opened, as is the next
    WorksPage* works_ = nullptr;                // a page of it
    std::unique_ptr<EditorWindow> editor_;
    std::unique_ptr<MonitorWindow> monitor_;
    std::unique_ptr<ManualWindow> manual_;
    std::unique_ptr<StatusMenu> status_;
    std::unique_ptr<HUDController> hud_;
};

}  // namespace brindlehum
