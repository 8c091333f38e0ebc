// The browser's texts: counts, and what to show and offer where there are no rows.
#include "ui/browser/browser_state.h"

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>

namespace brindlehum {
namespace {

QString number(int64_t value) {
    return QLocale().toString(static_cast<qlonglong>(value));
}

// `one` and `more` hold a %1.
QString counted(int64_t count, const QString& one, const QString& more) {
    return (count == 1 ? one : more).arg(number(count));
}

// "No results for “rain” in AMBIENCE, Storm Library"
QString nothingFound(const BrowserState::Snapshot& now) {
    QStringList places;
    for (const auto& place : {now.category, now.library}) {
        if (!place.isEmpty()) { places << place; }
    }
    const QString words = now.query.trimmed();
    if (places.isEmpty()) { return QCoreApplication::translate("BrowserState", "No results for “%1”").arg(words); }
    const QString where = places.join(", ");
    if (words.isEmpty()) { return QCoreApplication::translate("BrowserState", "No results in %1").arg(where); }
    return QCoreApplication::translate("BrowserState", "No results for “%1” in %2").arg(words, where);
}

void describeSearch(BrowserState& state, const BrowserState::Snapshot& now) {
    state.count = now.searchRunning ? QCoreApplication::translate("BrowserState", "Searching…")
                                    : counted(now.sounds, QCoreApplication::translate("BrowserState", "%1 result"),
                                              QCoreApplication::translate("BrowserState", "%1 results"));
    if (now.limit > 0 && now.sounds >= now.limit && !now.searchRunning) {
        state.countHint =
            QCoreApplication::translate("BrowserState", "The best %1 are shown. One more word narrows the search.")
                .arg(number(now.limit));
    }
    if (now.sounds > 0 || now.searchRunning) { return; }
    if (!now.hasCatalog) {
        state.title = QCoreApplication::translate("BrowserState", "Search isn't available");
        state.hint = QCoreApplication::translate(
            "BrowserState", "The library's catalog couldn't be opened. Folders can still be browsed.");
    } else if (!now.hasRoots) {
        state.title = QCoreApplication::translate("BrowserState", "Nothing to search yet");
        state.hint =
            QCoreApplication::translate("BrowserState", "Search finds the sounds in the folders of your library.");
        state.action = BrowserState::Action::addFolder;
        state.actionText = QCoreApplication::translate("BrowserState", "Add Folder…");
        return;
    } else {
        state.title = nothingFound(now);
        state.hint = now.indexing ? QCoreApplication::translate(
                                        "BrowserState", "Indexing is still under way: more may be found in a moment.")
                                  : QCoreApplication::translate(
                                        "BrowserState", "Fewer or shorter words find more. A minus excludes: -word.");
    }
    state.action = BrowserState::Action::clearFilters;
    state.actionText = QCoreApplication::translate("BrowserState", "Clear Search");
}

void describeFolder(BrowserState& state, const BrowserState::Snapshot& now) {
    QStringList counts;
    if (now.folders > 0) {
        counts << counted(now.folders, QCoreApplication::translate("BrowserState", "%1 folder"),
                          QCoreApplication::translate("BrowserState", "%1 folders"));
    }
    if (now.sounds > 0) {
        counts << counted(now.sounds, QCoreApplication::translate("BrowserState", "%1 sound"),
                          QCoreApplication::translate("BrowserState", "%1 sounds"));
    }
    state.count = counts.join(", ");
    if (now.folders > 0 || now.sounds > 0 || now.listing) { return; }
    const bool failed = !now.folderReadable && now.folderChosen;
    state.title = failed ? QCoreApplication::translate("BrowserState", "This folder can't be opened")
                         : QCoreApplication::translate("BrowserState", "No sounds in this folder");
    state.hint = now.folder;
    if (now.folderForbidden) {
        state.hint += "\n" + QCoreApplication::translate("BrowserState", "Its permissions don't let you read it.");
    } else if (failed) {
        state.hint +=
            "\n" + QCoreApplication::translate("BrowserState", "It may have been moved, or its volume isn't there.");
    }
    if (!now.hasRoots) {
        if (!now.folderReadable && !now.folderChosen) {
            state.title = QCoreApplication::translate("BrowserState", "No sounds yet");
        }
        const QString add = QCoreApplication::translate(
            "BrowserState", "Add the folders that hold your sounds: they are indexed, and searched as you type.");
        state.hint = failed ? state.hint + "\n" + add : add;
        state.action = BrowserState::Action::addFolder;
        state.actionText = QCoreApplication::translate("BrowserState", "Add Folder…");
    } else {
        state.action = BrowserState::Action::goUp;
        state.actionText = QCoreApplication::translate("BrowserState", "Enclosing Folder");
    }
}

}  // namespace

BrowserState BrowserState::of(const Snapshot& now) {
    BrowserState state;
    if (now.searching) {
        describeSearch(state, now);
    } else {
        describeFolder(state, now);
    }
    return state;
}

}  // namespace brindlehum
