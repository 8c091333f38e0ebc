// The entries of the status menu.
#include "ui/window/status_menu.h"

#include <QActionGroup>

#include "app/app_model.h"
#include "ui/look/icons.h"
#include "ui/look/menu_button.h"
#include "ui/look/setting_action.h"

namespace brindlehum {

StatusMenu::StatusMenu(AppModel& model, std::function<void()> quit) : model_(model) {
    addSetting(menu_, "Auto-Play", model.settings(), &AppSettings::autoPlay);
    menu_.addSeparator();
    outputs_ = menu_.addMenu("Output");
    menu_.addSeparator();
    menu_.addAction("Show Browser", [&model] { model.openWindow("main"); });
    menu_.addAction("Settings…", [&model] { model.openWindow("settings"); });
    menu_.addSeparator();
    menu_.addAction("Quit Brindlehum", [quit = std::move(quit)] { quit(); });
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
    outputs_->clear();
    delete outputs_->findChild<QActionGroup*>();
    auto* group = new QActionGroup(outputs_);
    const UUID active = model_.settings().activeProfile().id;
    for (const auto& profile : model_.settings().value().profiles) {
        group->addAction(addChoice(*outputs_, QString::fromStdString(profile.name), profile.id == active,
                                   [this, id = profile.id] { model_.player().listening().selectProfile(id); }));
    }
}

}  // namespace brindlehum
