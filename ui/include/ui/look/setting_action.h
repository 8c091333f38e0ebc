// Menu entries and check boxes that are one yes-or-no setting: what one shows, another has changed.
#pragma once

#include "settings/settings_store.h"

class QAction;
class QCheckBox;
class QMenu;

namespace brindlehum {

QAction* addSetting(QMenu& menu, const QString& text, SettingsStore& store, bool AppSettings::*field);
QCheckBox* makeSetting(const QString& text, SettingsStore& store, bool AppSettings::*field);

}  // namespace brindlehum
