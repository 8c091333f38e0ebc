// SidebarView: the library's roots, the facets of its index and other places, above the state of the index.
#pragma once

#include <QWidget>

#include "ui/sidebar/sidebar_model.h"

class QProgressBar;
class QTreeView;

namespace brindlehum {

class ElidedLabel;
class FolderListing;
class LibraryRoots;
class LibrarySearch;
class SettingsStore;
class SidebarTree;
class SymbolLabel;

class SidebarView : public QWidget {
    Q_OBJECT
public:
    SidebarView(FolderListing& listing, LibrarySearch& search, LibraryRoots& roots, SettingsStore& settings,
                QWidget* parent = nullptr);

    QTreeView& tree();
    SidebarModel& rows() { return rows_; }
    void refresh();
    // Does what a click on a row does.
    void activate(const SidebarRow& row);
    // The names of the sections that are folded up.
    QStringList folded() const;
    void setFolded(const QStringList& names);

Q_SIGNALS:
    void addFolderAsked();
    void typed(const QString& text);  // a letter, which belongs to the search
    void foldedChanged();

private:
    QWidget* makeFooter();
    void refreshFooter();
    void toggle(std::string facet, const std::optional<std::string>& now,
                void (LibrarySearch::*set)(const std::optional<std::string>&));
    void rowMenu(const QPoint& position);

    FolderListing& listing_;
    LibrarySearch& search_;
    LibraryRoots& roots_;
    SettingsStore& settings_;
    SidebarModel rows_;
    SidebarTree* tree_;
    SymbolLabel* busy_;
    ElidedLabel* state_;
    QProgressBar* progress_;
    ElidedLabel* detail_;
};

}  // namespace brindlehum
