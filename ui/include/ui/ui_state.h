// UIState: what the windows remember from run to run, apart from the settings.
#pragma once

#include <QByteArray>
#include <filesystem>
#include <string>

#include "settings/user_defaults.h"

namespace brindlehum {

struct UIState {
    static constexpr const char* key = "ui.state";

    std::filesystem::path folder;  // empty before the first
    QByteArray geometry;           // of the main window, Qt's own form
    QByteArray splitter;
    QByteArray columns;

    bool operator==(const UIState&) const = default;

    // A missing or unreadable part is empty.
    static UIState load(const UserDefaults& defaults);
    void save(UserDefaults& defaults) const;
};

}  // namespace brindlehum
