// The form of the library's folders: one row a root.
#include "ui/settings/library_settings.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

#include "library/model/library_roots.h"
#include "library/model/library_search.h"
#include "settings/settings_store.h"
#include "ui/look/elided_label.h"
#include "ui/look/path_text.h"
#include "ui/look/symbol_label.h"
#include "ui/sidebar/sidebar_rows.h"

namespace brindlehum {

LibrarySettings::LibrarySettings(SettingsStore& settings, LibraryRoots& roots, LibrarySearch& search,
                                 std::function<void()> addFolder)
    : settings_(settings), roots_(roots), search_(search) {
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(16, 8, 16, 16);
    auto* box = new QGroupBox(tr("Library folders (indexed for search)"));
    auto* column = new QVBoxLayout(box);
    column->setSpacing(8);
    auto* scroll = new QScrollArea;
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidget(list_ = new QWidget);
    auto* rows = new QVBoxLayout(list_);
    rows->setContentsMargins(0, 0, 6, 0);
    rows->setSpacing(6);
    rows->setAlignment(Qt::AlignTop);
    column->addWidget(scroll, 1);
    column->addWidget(makeButtons(std::move(addFolder)));
    page->addWidget(box, 1);
    connect(&settings, &SettingsStore::changed, this, &LibrarySettings::refreshRows);
    connect(&roots, &LibraryRoots::indexingChanged, this, [this] {
        refreshRows();
        refreshState();
    });
    connect(&search, &LibrarySearch::facetsChanged, this, &LibrarySettings::refreshState);
    refreshRows();
    refreshState();
}

QWidget* LibrarySettings::makeButtons(std::function<void()> addFolder) {
    auto* bar = new QWidget;
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    auto* add = new QPushButton(tr("Add Folder…"));
    auto* rescan = new QPushButton(tr("Rescan All"));
    connect(add, &QPushButton::clicked, this, [addFolder = std::move(addFolder)] { addFolder(); });
    connect(rescan, &QPushButton::clicked, &roots_, &LibraryRoots::rescanAll);
    row->addWidget(add);
    row->addWidget(rescan);
    row->addStretch(1);
    row->addWidget(state_ = new QLabel);
    state_->setProperty("role", "secondary");
    return bar;
}

void LibrarySettings::refreshRows() {
    std::vector<std::pair<std::string, std::string>> roots;
    for (const auto& root : settings_.value().libraryRoots) {
        const auto problem = roots_.problems().find(root);
        roots.emplace_back(root, problem == roots_.problems().end() ? "" : problem->second);
    }
    if (roots == shown_ && list_->layout()->count() > 0) { return; }
    shown_ = roots;
    while (QLayoutItem* item = list_->layout()->takeAt(0)) {
        item->widget()->hide();
        item->widget()->deleteLater();
        delete item;
    }
    for (const auto& [root, problem] : roots) { list_->layout()->addWidget(makeRow(root, problem)); }
    if (!roots.empty()) { return; }
    auto* none = new QLabel(tr("No folders yet. Add the folders that hold your sounds."));
    none->setProperty("role", "secondary");
    list_->layout()->addWidget(none);
}

QWidget* LibrarySettings::makeRow(const std::string& root, const std::string& problem) {
    auto* line = new QWidget;
    auto* grid = new QGridLayout(line);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(2);
    grid->setColumnStretch(1, 1);
    auto* path = new ElidedLabel(Qt::ElideMiddle);
    path->setFullText(pathText(root));
    auto* remove = new QPushButton(tr("Remove"));
    remove->setAccessibleName(tr("Remove %1").arg(pathText(root)));
    connect(remove, &QPushButton::clicked, this, [this, root = root] { roots_.askToRemove(root); });
    grid->addWidget(path, 0, 0, 1, 2);
    grid->addWidget(remove, 0, 2);
    if (problem.empty()) { return line; }
    auto* what = new ElidedLabel(Qt::ElideRight);
    what->setFullText(QString::fromStdString(problem));
    what->setProperty("role", "secondary");
    grid->addWidget(new SymbolLabel("warning", SymbolRole::warning), 1, 0);
    grid->addWidget(what, 1, 1, 1, 2);
    return line;
}

void LibrarySettings::refreshState() {
    const QString count = SidebarRows::filesOf(search_.indexedCount());
    state_->setText(roots_.indexing().empty() ? count : tr("Indexing…  %1").arg(count));
}

}  // namespace brindlehum
