// BrowserState: what the browser says in place of rows, and about them, as a pure function of a plain snapshot.
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
        QString query;
        QString category;
        QString library;
        QString folder;  // path of the folder shown
        int64_t folders = 0;
        int64_t sounds = 0;  // in the folder, or found
        int64_t limit = 0;   // of a search
    };

    // In place of the rows; empty while there are rows or it isn't known yet whether there are.
    QString title;
    QString hint;
    Action action = Action::none;
    QString actionText;
    // Beside the filters: "1,204 results", "3 folders, 28 sounds".
    QString count;
    // What more there is to know of the count; usually empty.
    QString countHint;

    static BrowserState of(const Snapshot& now);
};

}  // namespace brindlehum
