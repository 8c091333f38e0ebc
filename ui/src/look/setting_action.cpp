// Binds menu entries and check boxes to settings.
#include "ui/look/setting_action.h"

#include <QCheckBox>
#include <QMenu>

namespace brindlehum {
namespace {

// Binds a checkable action or box, which announces the user's change by toggled(), to a setting.
template <typename Control>
void bind(Control* control, SettingsStore& store, bool AppSettings::*field) {
    control->setChecked(store.value().*field);
    QObject::connect(control, &Control::toggled, &store,
                     [&store, field](bool on) { store.change([=](AppSettings& settings) { settings.*field = on; }); });
    QObject::connect(&store, &SettingsStore::changed, control,
                     [control, field](const AppSettings& now) { control->setChecked(now.*field); });
}

}  // namespace

QAction* addSetting(QMenu& menu, const QString& text, SettingsStore& store, bool AppSettings::*field) {
    auto* action = menu.addAction(text);
    action->setCheckable(true);
    bind(action, store, field);
    return action;
}

QCheckBox* makeSetting(const QString& text, SettingsStore& store, bool AppSettings::*field) {
    auto* box = new QCheckBox(text);
    bind(box, store, field);
    return box;
}

}  // namespace brindlehum
