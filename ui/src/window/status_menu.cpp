// The entries of the status menu.
#include "ui/window/status_menu.h"

#include "app/app_model.h"
#include "ui/look/icons.h"
#include "ui/look/setting_action.h"
#include "ui/window/outputs_menu.h"

namespace brindlehum {

StatusMenu::StatusMenu(AppModel& model, std::function<void()> quit) : model_(model) {
    addSetting(menu_, tr("File Manager Panel"), model.settings(), &AppSettings::finderPanel);
    addSetting(menu_, tr("Auto-Play"), model.settings(), &AppSettings::autoPlay);
    addSetting(menu_, tr("Space Plays in File Manager"), model.settings(), &AppSettings::spacePlaysInFinder);
    menu_.addSeparator();
    outputs_ = menu_.addMenu(tr("Output"));
    menu_.addSeparator();
    menu_.addAction(tr("Open Copied Link"), [&model] { model.openCopiedLink(); });
    menu_.addAction(tr("Show Browser"), [&model] { model.openWindow("main"); });
    menu_.addAction(tr("Show Editor"), [&model] { model.openWindow("editor"); });
    menu_.addAction(tr("Show Monitor"), [&model] { model.openWindow("monitor"); });
    menu_.addAction(tr("Settings…"), [&model] { model.openWindow("settings"); });
    menu_.addSeparator();
    menu_.addAction(tr("Quit Brindlehum"), [quit = std::move(quit)] { quit(); });
    // Trays show an exported copy of the menu, so its entries are kept up to date and not made at opening.
    connect(&model.settings(), &SettingsStore::changed, this, &StatusMenu::fillOutputs);
    fillOutputs();

    tray_.setIcon(applicationIcon());
    tray_.setToolTip("Brindlehum");
    tray_.setContextMenu(&menu_);
    connect(&tray_, &QSystemTrayIcon::activated, this, [&model](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger) { model.openWindow("main"); }
    });
    tray_.show();
}

void StatusMenu::fillOutputs() {
    brindlehum::fillOutputs(*outputs_, model_.settings(), model_.player().listening());
}

}  // namespace brindlehum
