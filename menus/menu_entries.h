// What Brindlehum adds to the menus of file managers: the entries, the files that get them, and what they start.
#pragma once

#include <glib-object.h>

#include <array>
#include <string>
#include <vector>

namespace brindlehum {

struct MenuEntry {
    const char* name;  // unique within the file manager
    const char* label;
    const char* tip;
    const char* option;  // of the program brindlehum
};

inline constexpr std::array menuEntries = {
    MenuEntry{"Brindlehum::play", "Play in Brindlehum", "Play the first of the chosen sounds", "--play"},
    MenuEntry{"Brindlehum::temp-edits", "Make Temp Edits",
              "Cutdowns, loop and endings of the chosen music, in a folder beside it", "--temp-edits"},
};

// Whether there is at least one file and all are sounds of this machine by their file:// addresses. The addresses keep
// every byte of a name. Reads no disk.
bool areSounds(const std::vector<std::string>& addresses);

// Makes the item's signal "activate" start Brindlehum, which hands the files to the running one.
void startWhenActivated(GObject* item, const MenuEntry& entry, const std::vector<std::string>& addresses);

}  // namespace brindlehum
