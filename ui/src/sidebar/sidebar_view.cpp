// The sidebar's view: rows and footer from the library, and what rows do.
#include "ui/sidebar/sidebar_view.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QProgressBar>
#include <QVBoxLayout>

#include "library/model/folder_listing.h"
#include "library/model/library_roots.h"
#include "library/model/library_search.h"
#include "library/model/places.h"
#include "settings/settings_store.h"
#include "ui/look/elided_label.h"
#include "ui/look/symbol_label.h"
#include "ui/sidebar/sidebar_tree.h"

namespace brindlehum {

SidebarView::SidebarView(FolderListing& listing, LibrarySearch& search, LibraryRoots& roots, SettingsStore& settings,
                         QWidget* parent)
    : QWidget(parent), listing_(listing), search_(search), roots_(roots), settings_(settings) {
    setObjectName("sidebar");
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(8, 0, 0, 8);
    all->setSpacing(0);
    tree_ = new SidebarTree(rows_);
    all->addWidget(tree_, 1);
    all->addWidget(makeFooter());
    connect(tree_, &SidebarTree::chosen, this, [this](const QModelIndex& index) {
        // A copy, because choosing a row changes the rows.
        if (const SidebarRow* row = rows_.row(index)) { activate(SidebarRow(*row)); }
    });
    connect(tree_, &SidebarTree::typed, this, &SidebarView::typed);
    connect(tree_, &QWidget::customContextMenuRequested, this, &SidebarView::rowMenu);
    connect(tree_, &QTreeView::expanded, this, &SidebarView::foldedChanged);
    connect(tree_, &QTreeView::collapsed, this, &SidebarView::foldedChanged);
    connect(&listing, &FolderListing::entriesChanged, this, &SidebarView::refresh);
    connect(&search, &LibrarySearch::filterChanged, this, &SidebarView::refresh);
    connect(&search, &LibrarySearch::facetsChanged, this, &SidebarView::refresh);
    connect(&roots, &LibraryRoots::indexingChanged, this, &SidebarView::refresh);
    connect(&settings, &SettingsStore::changed, this, &SidebarView::refresh);
    refresh();
}

QTreeView& SidebarView::tree() {
    return *tree_;
}

QWidget* SidebarView::makeFooter() {
    auto* box = new QWidget;
    auto* column = new QVBoxLayout(box);
    column->setContentsMargins(8, 8, 8, 0);
    column->setSpacing(6);
    auto* row = new QHBoxLayout;
    row->setSpacing(8);
    row->addWidget(busy_ = new SymbolLabel("hourglass", SymbolRole::secondary));
    row->addWidget(state_ = new ElidedLabel(Qt::ElideRight), 1);
    state_->setProperty("role", "secondary");
    column->addLayout(row);
    column->addWidget(progress_ = new QProgressBar);
    progress_->setTextVisible(false);
    progress_->setAccessibleName(tr("Indexing progress"));
    column->addWidget(detail_ = new ElidedLabel(Qt::ElideRight));
    detail_->setProperty("role", "caption");
    return box;
}

void SidebarView::refresh() {
    SidebarRows::Snapshot now;
    now.roots = settings_.value().libraryRoots;
    now.indexing.assign(roots_.indexing().begin(), roots_.indexing().end());
    now.problems = roots_.problems();
    now.places = placesOf(settings_.value().pulls().string());
    now.categories = search_.categories();
    now.libraries = search_.libraries();
    now.category = search_.category();
    now.library = search_.libraryFilter();
    if (!search_.isSearching()) { now.folder = listing_.folder(); }
    rows_.setSections(SidebarRows::build(now));
    for (const int section : {SidebarRows::Categories, SidebarRows::Libraries}) {
        tree_->setRowHidden(section, {}, rows_.rowCount(rows_.section(section)) == 0);
    }
    refreshFooter();
}

void SidebarView::refreshFooter() {
    int64_t done = 0;
    int64_t found = 0;
    bool counted = true;  // all roots know how many files they hold
    for (const auto& root : roots_.indexing()) {
        const auto progress = roots_.scanProgress(root);
        done += progress ? progress->done : 0;
        found += progress ? progress->found : 0;
        counted = counted && progress && progress->phase != LibraryScanner::Progress::Phase::finding;
    }
    const bool indexing = !roots_.indexing().empty();
    busy_->setVisible(indexing);
    state_->setFullText(SidebarRows::footer(indexing, search_.indexedCount()));
    progress_->setVisible(indexing);
    detail_->setVisible(indexing);
    detail_->setFullText(SidebarRows::progress(counted, done, found));
    // While the total is unknown, the bar shows only that something is happening.
    progress_->setRange(0, counted ? 1000 : 0);
    if (counted) { progress_->setValue(found > 0 ? int(done * 1000 / found) : 0); }
}

void SidebarView::activate(const SidebarRow& row) {
    switch (row.kind) {
        case SidebarRow::Kind::root:
            // Its volume may have been mounted again.
            if (!row.problem.isEmpty()) { roots_.rescan(row.value); }
            [[fallthrough]];
        case SidebarRow::Kind::place:
            search_.clearFilters();
            listing_.open(row.value);
            break;
        case SidebarRow::Kind::addFolder:
            Q_EMIT addFolderAsked();
            break;
        case SidebarRow::Kind::category:
            toggle(row.value, search_.category(), &LibrarySearch::setCategory);
            break;
        case SidebarRow::Kind::library:
            toggle(row.value, search_.libraryFilter(), &LibrarySearch::setLibraryFilter);
            break;
    }
}

void SidebarView::toggle(std::string facet, const std::optional<std::string>& now,
                         void (LibrarySearch::*set)(const std::optional<std::string>&)) {
    const bool off = now == facet;
    (search_.*set)(off ? std::nullopt : std::optional(std::move(facet)));
}

void SidebarView::rowMenu(const QPoint& position) {
    const SidebarRow* row = rows_.row(tree_->indexAt(position));
    if (!row || row->kind != SidebarRow::Kind::root) { return; }
    QMenu menu;
    menu.addAction(tr("Rescan"), &roots_, &LibraryRoots::rescanAll);
    menu.addAction(tr("Remove from Library"), [this, path = row->value] { roots_.askToRemove(path); });
    menu.exec(tree_->viewport()->mapToGlobal(position));
}

QStringList SidebarView::folded() const {
    QStringList names;
    for (int at = 0; at < SidebarRows::SectionCount; ++at) {
        if (!tree_->isExpanded(rows_.section(at))) { names << SidebarRows::sectionKey(at); }
    }
    return names;
}

void SidebarView::setFolded(const QStringList& names) {
    for (int at = 0; at < SidebarRows::SectionCount; ++at) {
        tree_->setExpanded(rows_.section(at), !names.contains(SidebarRows::sectionKey(at)));
    }
}

}  // namespace brindlehum
