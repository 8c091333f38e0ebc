// UIState: sizes and visible parts of the windows, stored from run to run.
#pragma once

#include <QByteArray>
#include <QStringList>
#include <string>

#include "settings/user_defaults.h"

namespace brindlehum {

struct UIState {
    static constexpr const char* key = "ui.state";

    QByteArray geometry;        // of the main window, Qt's own form, as are the next three
    QByteArray sidebarSplit;    // sidebar and the rest
    QByteArray inspectorSplit;  // browser and inspector
    QByteArray columns;         // of the browser
    QStringList folded;         // sections of the sidebar that show their name alone
    int playerExtra = 0;        // logical pixels that the user has added to the automatic height of the player
    bool inspector = true;
    bool sidebar = true;

    bool operator==(const UIState&) const = default;

    // A missing or unreadable part gets its default.
    static UIState load(const UserDefaults& defaults);
    void save(UserDefaults& defaults) const;
};

}  // namespace brindlehum
