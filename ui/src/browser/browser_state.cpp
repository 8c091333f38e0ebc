// The browser's texts: counts, and what to show and offer where there are no rows.
#include "ui/browser/browser_state.h"

#include <QLocale>
#include <QStringList>

namespace brindlehum {
namespace {

QString number(int64_t value) {
    return QLocale().toString(static_cast<qlonglong>(value));
}

QString counted(int64_t count, const QString& one, const QString& more) {
    return number(count) + " " + (count == 1 ? one : more);
}

// "“rain” in AMBIENCE, Storm Library"
QString searched(const BrowserState::Snapshot& now) {
    QStringList places;
    for (const auto& place : {now.category, now.library}) {
        if (!place.isEmpty()) { places << place; }
    }
    const QString words = now.query.trimmed();
    const QString what = words.isEmpty() ? QString() : "“" + words + "”";
    if (places.isEmpty()) { return what; }
    return (what.isEmpty() ? QString() : what + " ") + "in " + places.join(", ");
}

void describeSearch(BrowserState& state, const BrowserState::Snapshot& now) {
    state.count = now.searchRunning ? QString("Searching…") : counted(now.sounds, "result", "results");
    if (now.limit > 0 && now.sounds >= now.limit && !now.searchRunning) {
        state.countHint = QString("The best %1 are shown. One more word narrows the search.").arg(number(now.limit));
    }
    if (now.sounds > 0 || now.searchRunning) { return; }
    if (!now.hasCatalog) {
        state.title = "Search isn't available";
        state.hint = "The library's catalog couldn't be opened. Folders can still be browsed.";
    } else if (!now.hasRoots) {
        state.title = "Nothing to search yet";
        state.hint = "Search finds the sounds in the folders of your library.";
        state.action = BrowserState::Action::addFolder;
        state.actionText = "Add Folder…";
        return;
    } else {
        state.title = "No results for " + searched(now);
        state.title.replace("for in ", "in ");
        state.hint = now.indexing ? "Indexing is still under way: more may be found in a moment."
                                  : "Fewer or shorter words find more. A minus excludes: -word.";
    }
    state.action = BrowserState::Action::clearFilters;
    state.actionText = "Clear Search";
}

void describeFolder(BrowserState& state, const BrowserState::Snapshot& now) {
    QStringList counts;
    if (now.folders > 0) { counts << counted(now.folders, "folder", "folders"); }
    if (now.sounds > 0) { counts << counted(now.sounds, "sound", "sounds"); }
    state.count = counts.join(", ");
    if (now.folders > 0 || now.sounds > 0 || now.listing) { return; }
    const bool failed = !now.folderReadable && now.folderChosen;
    state.title = failed ? "This folder can't be opened" : "No sounds in this folder";
    state.hint = now.folder;
    if (now.folderForbidden) {
        state.hint += "\nIts permissions don't let you read it.";
    } else if (failed) {
        state.hint += "\nIt may have been moved, or its volume isn't there.";
    }
    if (!now.hasRoots) {
        if (!now.folderReadable && !now.folderChosen) { state.title = "No sounds yet"; }
        const QString add = "Add the folders that hold your sounds: they are indexed, and searched as you type.";
        state.hint = failed ? state.hint + "\n" + add : add;
        state.action = BrowserState::Action::addFolder;
        state.actionText = "Add Folder…";
    } else {
        state.action = BrowserState::Action::goUp;
        state.actionText = "Enclosing Folder";
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
