// The entries that choose an upmix, for the player's button and the upmix panel.
#pragma once

class QMenu;
class QString;

namespace brindlehum {

class ListeningSetup;
class UpmixTuning;

// "Off", the built-in presets and the user's own ones.
void addUpmixChoices(QMenu& menu, UpmixTuning& upmix);
// The chosen preset, "(changed)" when its numbers were; "Off" when the upmix is.
QString upmixChoice(const UpmixTuning& upmix);
// Why a chosen upmix isn't heard, or can't be; empty when it is, or is off.
QString upmixProblem(const ListeningSetup& listening);

}  // namespace brindlehum
