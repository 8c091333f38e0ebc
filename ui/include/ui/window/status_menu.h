// StatusMenu: the menu in the system tray, which stays when no window is open.
#pragma once

#include <QMenu>
#include <QSystemTrayIcon>
#include <functional>

namespace brindlehum {

class AppModel;

class StatusMenu : public QObject {
    Q_OBJECT
public:
    StatusMenu(AppModel& model, std::function<void()> quit);
    QMenu& menu() { return menu_; }

private:
    void fillOutputs();

    AppModel& model_;
    QMenu menu_;
    QMenu* outputs_;
    QSystemTrayIcon tray_;
};

}  // namespace brindlehum
