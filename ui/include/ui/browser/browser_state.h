// BrowserState: the text beside the browser's rows or in their place, as a pure function of a plain snapshot.
#pragma once

#include <QString>
#include <cstdint>

namespace brindlehum {

struct BrowserState {
    enum class Action { none, addFolder, clearFilters, goUp };

    struct Snapshot {
        bool searching = false;
        bool searchRunning = false;
        bool listing = false;
        bool indexing = false;
        bool hasCatalog = true;
        bool hasRoots = true;
        bool folderReadable = true;
        bool folderForbidden = false;  // why it isn't
        bool folderChosen = true;      // by the user; false for the one that is shown at the first start
        QString query;
        QString category;
        QString library;
        QString folder;  // path of the folder shown
        int64_t folders = 0;
        int64_t sounds = 0;  // in the folder, or found
        int64_t limit = 0;   // of a search
    };

    // Shown in place of the rows; empty while there are rows or they are still on their way.
    QString title;
    QString hint;
    Action action = Action::none;
    QString actionText;
    // Beside the filters: "1,204 results", "3 folders, 28 sounds".
    QString count;
    // The tooltip of the count; usually empty.
    QString countHint;

    static BrowserState of(const Snapshot& now);
};

}  // namespace brindlehum
