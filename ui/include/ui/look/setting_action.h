// Menu entries and check boxes bound to a yes-or-no setting; all of them always show the same.
#pragma once

#include "settings/settings_store.h"

class QAction;
class QCheckBox;
class QMenu;

namespace brindlehum {

QAction* addSetting(QMenu& menu, const QString& text, SettingsStore& store, bool AppSettings::*field);
QCheckBox* makeSetting(const QString& text, SettingsStore& store, bool AppSettings::*field);

}  // namespace brindlehum
