// The output profiles as menu entries, the active one checked.
#pragma once

class QMenu;

namespace brindlehum {

class ListeningSetup;
class SettingsStore;

// Replaces the menu's entries. Choosing one makes that profile active.
void fillOutputs(QMenu& menu, const SettingsStore& settings, ListeningSetup& listening);

}  // namespace brindlehum
