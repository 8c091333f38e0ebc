// The sidebar's view: rows and footer from the library, and what rows do.
#include "ui/sidebar/sidebar_view.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QProgressBar>
#include <QVBoxLayout>

#include "ui/look/elided_label.h"
#include "ui/look/symbol_label.h"
#include "ui/sidebar/sidebar_tree.h"

namespace brindlehum {

SidebarView::SidebarView(LibraryModel& library, QWidget* parent) : QWidget(parent), library_(library) {
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
    connect(&library.listing(), &FolderListing::entriesChanged, this, &SidebarView::refresh);
    connect(&library.search(), &LibrarySearch::filterChanged, this, &SidebarView::refresh);
    connect(&library.search(), &LibrarySearch::facetsChanged, this, &SidebarView::refresh);
    connect(&library.roots(), &LibraryRoots::indexingChanged, this, &SidebarView::refresh);
    connect(&library.settings(), &SettingsStore::changed, this, &SidebarView::refresh);
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
    progress_->setAccessibleName("Indexing progress");
    column->addWidget(detail_ = new ElidedLabel(Qt::ElideRight));
    detail_->setProperty("role", "caption");
    return box;
}

void SidebarView::refresh() {
    SidebarRows::Snapshot now;
    now.roots = library_.settings().value().libraryRoots;
    now.indexing.assign(library_.roots().indexing().begin(), library_.roots().indexing().end());
    now.problems = library_.roots().problems();
    now.places = library_.places();
    now.categories = library_.search().categories();
    now.libraries = library_.search().libraries();
    now.category = library_.search().category();
    now.library = library_.search().libraryFilter();
    if (!library_.search().isSearching()) { now.folder = library_.listing().folder(); }
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
    for (const auto& root : library_.roots().indexing()) {
        const auto progress = library_.roots().scanProgress(root);
        done += progress ? progress->done : 0;
        found += progress ? progress->found : 0;
        counted = counted && progress && progress->phase != LibraryScanner::Progress::Phase::finding;
    }
    const bool indexing = !library_.roots().indexing().empty();
    busy_->setVisible(indexing);
    state_->setFullText(SidebarRows::footer(indexing, library_.search().indexedCount()));
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
            if (!row.problem.isEmpty()) { library_.roots().rescan(row.value); }
            [[fallthrough]];
        case SidebarRow::Kind::place:
            library_.search().clearFilters();
            library_.listing().open(row.value);
            break;
        case SidebarRow::Kind::addFolder:
            Q_EMIT addFolderAsked();
            break;
        case SidebarRow::Kind::category:
            toggle(row.value, library_.search().category(), &LibrarySearch::setCategory);
            break;
        case SidebarRow::Kind::library:
            toggle(row.value, library_.search().libraryFilter(), &LibrarySearch::setLibraryFilter);
            break;
    }
}

void SidebarView::toggle(std::string facet, const std::optional<std::string>& now,
                         void (LibrarySearch::*set)(const std::optional<std::string>&)) {
    const bool off = now == facet;
    (library_.search().*set)(off ? std::nullopt : std::optional(std::move(facet)));
}

void SidebarView::rowMenu(const QPoint& position) {
    const SidebarRow* row = rows_.row(tree_->indexAt(position));
    if (!row || row->kind != SidebarRow::Kind::root) { return; }
    QMenu menu;
    menu.addAction("Rescan", &library_.roots(), &LibraryRoots::rescanAll);
    menu.addAction("Remove from Library", [this, path = row->value] { library_.roots().remove(path); });
    menu.exec(tree_->viewport()->mapToGlobal(position));
}

QStringList SidebarView::folded() const {
    QStringList names;
    for (int at = 0; at < SidebarRows::SectionCount; ++at) {
        if (!tree_->isExpanded(rows_.section(at))) { names << SidebarRows::sectionName(at); }
    }
    return names;
}

void SidebarView::setFolded(const QStringList& names) {
    for (int at = 0; at < SidebarRows::SectionCount; ++at) {
        tree_->setExpanded(rows_.section(at), !names.contains(SidebarRows::sectionName(at)));
    }
}

}  // namespace brindlehum
