// Outputs menu: one choice for each output profile.
#include "ui/window/outputs_menu.h"

#include <QActionGroup>
#include <QMenu>

#include "mix/player/listening_setup.h"
#include "settings/settings_store.h"
#include "ui/look/menu_button.h"

namespace brindlehum {

void fillOutputs(QMenu& menu, const SettingsStore& settings, ListeningSetup& listening) {
    menu.clear();
    delete menu.findChild<QActionGroup*>();
    auto* group = new QActionGroup(&menu);
    const UUID active = settings.activeProfile().id;
    for (const auto& profile : settings.value().profiles) {
        group->addAction(addChoice(menu, QString::fromStdString(profile.name), profile.id == active,
                                   [&listening, id = profile.id] { listening.selectProfile(id); }));
    }
}

}  // namespace brindlehum
