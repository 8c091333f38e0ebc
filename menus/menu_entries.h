// What Brindlehum adds to the menus of file managers: the entries, the files that get them, and what they start.
#pragma once

#include <glib-object.h>

#include <array>
#include <string>
#include <vector>

namespace brindlehum {

// In the languages that Brindlehum's windows speak.
struct MenuText {
    const char* english;
    const char* german;
    const char* shown() const;  // in that of the desktop
};

struct MenuEntry {
    const char* name;  // unique within the file manager
    MenuText label;
    MenuText tip;
    const char* option;  // of the program brindlehum
};

inline constexpr std::array menuEntries = {
    MenuEntry{"Brindlehum::play",
              {"Play in Brindlehum", "In Brindlehum abspielen"},
              {"Play the first of the chosen sounds", "Den ersten der gewählten Klänge abspielen"},
              "--play"},
    MenuEntry{"Brindlehum::temp-edits",
              {"Make Temp Edits", "Temp-Schnitte erstellen"},
              {"Cutdowns, loop and endings of the chosen music, in a folder beside it",
               "Kurzfassungen, Loop und Schlüsse der gewählten Musik, in einem Ordner daneben"},
              "--temp-edits"},
};

// Whether there is at least one file and all are sounds of this machine by their file:// addresses. The addresses keep
// every byte of a name. Reads no disk.
bool areSounds(const std::vector<std::string>& addresses);

// Makes the item's signal "activate" start Brindlehum, which hands the files to the running one.
void startWhenActivated(GObject* item, const MenuEntry& entry, const std::vector<std::string>& addresses);

}  // namespace brindlehum
