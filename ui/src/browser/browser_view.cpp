// The browser's view: brings rows and states from the library to table and bar.
#include "ui/browser/browser_view.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMenu>
#include <QStackedLayout>
#include <QVBoxLayout>
#include <utility>

#include "library/model/folder_listing.h"
#include "library/model/info_cache.h"
#include "library/model/library_roots.h"
#include "library/model/library_search.h"
#include "library/model/places.h"
#include "mix/player/transport.h"
#include "settings/settings_store.h"
#include "ui/browser/browser_bar.h"
#include "ui/browser/browser_table.h"
#include "ui/browser/chosen_sound.h"
#include "ui/look/elided_label.h"
#include "ui/look/empty_state.h"
#include "ui/look/path_text.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;

constexpr int settleMs = 300;
constexpr int minWidth = 340;  // logical pixels

void copyPaths(const BrowserActions::Files& files) {
    QStringList paths;
    for (const auto& file : files) { paths << pathText(file); }
    QGuiApplication::clipboard()->setText(paths.join('\n'));
}

}  // namespace

BrowserView::BrowserView(const BrowserParts& parts, QWidget* parent) : QWidget(parent), parts_(parts) {
    setMinimumWidth(minWidth);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(8, 8, 8, 4);
    column->setSpacing(4);
    column->addWidget(bar_ = new BrowserBar(parts.listing, parts.search));
    auto* area = new QWidget;
    stack_ = new QStackedLayout(area);
    stack_->addWidget(table_ = new BrowserTable);
    stack_->addWidget(empty_ = new EmptyState);
    column->addWidget(area, 1);
    column->addWidget(message_ = new ElidedLabel(Qt::ElideRight));
    message_->setProperty("role", "secondary");
    chosen_ = new ChosenSound(parts, *table_, this);
    actions_.copyPath = copyPaths;
    connect(bar_, &BrowserBar::backToRows, table_, qOverload<>(&QWidget::setFocus));
    connect(bar_, &BrowserBar::downAsked, this, [this] {
        table_->setFocus();
        if (table_->selectedEntries().empty()) { table_->selectFirst(); }
    });
    connect(empty_, &EmptyState::actionAsked, this, &BrowserView::act);
    connectLibrary();
    connectTable();
    refresh();
}

void BrowserView::connectLibrary() {
    settle_.setSingleShot(true);
    settle_.setInterval(settleMs);
    connect(&settle_, &QTimer::timeout, &parts_.listing, &FolderListing::refresh);
    connect(&watcher_, &QFileSystemWatcher::directoryChanged, this, [this] { settle_.start(); });
    connect(&parts_.listing, &FolderListing::entriesChanged, this, &BrowserView::refresh);
    connect(&parts_.search, &LibrarySearch::filterChanged, this, &BrowserView::refresh);
    connect(&parts_.search, &LibrarySearch::resultsChanged, this, &BrowserView::refresh);
    connect(&parts_.roots, &LibraryRoots::indexingChanged, this, &BrowserView::showState);
    connect(&parts_.settings, &SettingsStore::changed, this, &BrowserView::showState);
}

void BrowserView::connectTable() {
    table_->rows().askInfo = [this](const fs::path& url) { return parts_.infos.info(url); };
    connect(&parts_.infos, &InfoCache::loaded, this, [this](const fs::path& url) {
        if (const auto* info = parts_.infos.info(url)) { table_->rows().setInfo(url, *info); }
    });
    connect(table_, &BrowserTable::chosen, this, &BrowserView::auditionChosen);
    connect(table_, &BrowserTable::selectionMoved, this, &BrowserView::selectionMoved);
    connect(table_, &BrowserTable::activatedEntry, this, [this](const BrowserEntry& entry) {
        activate(BrowserEntry(entry));  // a copy: opening a folder takes the rows away
    });
    connect(table_, &BrowserTable::togglePlay, this, [this] { parts_.transport.togglePlay(); });
    connect(table_, &BrowserTable::goUp, this, [this] {
        if (!table_->place().searching) { parts_.listing.goUp(); }
    });
    connect(table_, &BrowserTable::typed, bar_, &BrowserBar::type);
    connect(table_, &BrowserTable::menuAsked, this, &BrowserView::openMenu);
}

void BrowserView::refresh() {
    const bool searching = parts_.search.isSearching();
    // The rows of the search before stay until the results are there, so that nothing flickers; the count says
    // "Searching…" until then.
    if (searching && parts_.search.isRunning()) {
        showState();
        return;
    }
    const BrowserPlace place{searching, searching
                                            ? parts_.search.query() + '\n' + parts_.search.category().value_or("") +
                                                  '\n' + parts_.search.libraryFilter().value_or("")
                                            : parts_.listing.folder().value_or(fs::path()).native()};
    if (place != table_->place()) { parts_.infos.forgetWaiting(); }
    chosen_->showRows(searching ? parts_.search.results() : parts_.listing.entries(), place);
    watchFolder();
    showState();
}

BrowserState::Snapshot BrowserView::snapshot() const {
    BrowserState::Snapshot now;
    now.searching = parts_.search.isSearching();
    now.searchRunning = parts_.search.isRunning();
    now.listing = parts_.listing.isListing();
    now.indexing = !parts_.roots.indexing().empty();
    now.hasCatalog = parts_.search.hasCatalog();
    now.hasRoots = !parts_.settings.value().libraryRoots.empty();
    now.query = QString::fromStdString(parts_.search.query());
    now.category = QString::fromStdString(parts_.search.category().value_or(""));
    now.library = QString::fromStdString(parts_.search.libraryFilter().value_or(""));
    now.limit = LibrarySearch::maxResults;
    if (now.searching) {
        now.sounds = int64_t(parts_.search.results().size());
        return now;
    }
    for (const auto& entry : parts_.listing.entries()) { ++(entry.isFolder ? now.folders : now.sounds); }
    const auto& folder = parts_.listing.folder();
    now.folder = folder ? pathText(*folder) : QString();
    now.folderChosen = folder != musicFolder();
    now.folderReadable = !parts_.listing.error();
    now.folderForbidden = parts_.listing.error() == std::errc::permission_denied;
    return now;
}

void BrowserView::showState() {
    state_ = BrowserState::of(snapshot());
    bar_->showState(state_);
    const bool empty = !state_.title.isEmpty();
    if (empty) { empty_->setTexts(state_.title, state_.hint, state_.actionText); }
    const bool hadFocus = table_->hasFocus();
    stack_->setCurrentWidget(empty ? static_cast<QWidget*>(empty_) : table_);
    if (hadFocus && empty) {
        bar_->field().setFocus();
        lentFocus_ = true;
    } else if (!empty && std::exchange(lentFocus_, false) && bar_->field().hasFocus() &&
               bar_->field().text().isEmpty()) {
        table_->setFocus();
    }
}

void BrowserView::act() {
    switch (state_.action) {
        case BrowserState::Action::addFolder:
            Q_EMIT addFolderAsked();
            break;
        case BrowserState::Action::clearFilters:
            parts_.search.clearFilters();
            table_->setFocus();
            break;
        case BrowserState::Action::goUp:
            parts_.listing.goUp();
            table_->setFocus();
            break;
        case BrowserState::Action::none:
            break;
    }
}

void BrowserView::auditionChosen() {
    chosen_->selected();
    const auto entries = table_->selectedEntries();
    if (entries.size() != 1 || entries.front().isFolder) { return; }
    chosen_->audition(entries.front().url);
}

void BrowserView::activate(const BrowserEntry& entry) {
    if (AudioFileInfo::isAudioPath(entry.url) && !entry.isFolder) {
        chosen_->play(entry.url);
    } else {
        chosen_->openFolder(entry.url);
        table_->setFocus();
    }
}

// Files that other programs add or remove show without a refresh. Waits for the folder to be listed: the watcher asks
// the disk on the main thread, and a disk may not answer.
void BrowserView::watchFolder() {
    const auto& folder = parts_.listing.folder();
    const bool answers = folder && !parts_.listing.isListing() && !parts_.listing.error();
    const QStringList wanted = answers ? QStringList(pathText(*folder)) : QStringList();
    if (watcher_.directories() == wanted) { return; }
    if (!watcher_.directories().isEmpty()) { watcher_.removePaths(watcher_.directories()); }
    if (wanted.isEmpty()) { return; }
    watcher_.addPaths(wanted);
    settle_.start();  // for what has changed since it was listed
}

void BrowserView::focusSearch() {
    bar_->field().setFocus(Qt::ShortcutFocusReason);
    bar_->field().selectAll();
}

void BrowserView::showMessage(const QString& text) {
    message_->setFullText(text);
}

void BrowserView::openMenu(const QPoint& position) {
    BrowserActions::Files files;
    for (const auto& entry : table_->selectedEntries()) { files.push_back(entry.url); }
    if (files.empty()) { return; }
    QMenu menu;
    fillBrowserMenu(menu, files, actions_);
    menu.exec(position);
}

}  // namespace brindlehum
