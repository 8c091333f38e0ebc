// BrowserView: the folder or the search results of the library as a table, with the bar above.
#pragma once

#include <QFileSystemWatcher>
#include <QTimer>
#include <QWidget>
#include <filesystem>

#include "ui/browser/browser_menu.h"
#include "ui/browser/browser_parts.h"
#include "ui/browser/browser_state.h"

class QStackedLayout;

namespace brindlehum {

class BrowserBar;
class BrowserTable;
class ChosenSound;
class ElidedLabel;
class EmptyState;
struct BrowserEntry;

class BrowserView : public QWidget {
    Q_OBJECT
public:
    explicit BrowserView(const BrowserParts& parts, QWidget* parent = nullptr);

    BrowserBar& bar() { return *bar_; }
    BrowserTable& table() { return *table_; }
    ChosenSound& chosen() { return *chosen_; }
    // Plays a sound, opens a folder.
    void activate(const BrowserEntry& entry);
    // The actions of the context menu. copyPath is set; the owner sets the others.
    BrowserActions& actions() { return actions_; }
    void focusSearch();
    // The line below the rows.
    void showMessage(const QString& text);

Q_SIGNALS:
    void selectionMoved();
    void addFolderAsked();

private:
    void connectLibrary();
    void connectTable();
    void refresh();
    void showState();
    BrowserState::Snapshot snapshot() const;
    void auditionChosen();
    void act();
    void watchFolder();
    void openMenu(const QPoint& position);

    BrowserParts parts_;
    BrowserBar* bar_;
    BrowserTable* table_;
    ChosenSound* chosen_;
    QStackedLayout* stack_;
    EmptyState* empty_;
    ElidedLabel* message_;
    BrowserActions actions_;
    BrowserState state_;
    bool lentFocus_ = false;  // the search field has the focus because the table was empty
    QFileSystemWatcher watcher_;
    QTimer settle_;  // gathers a burst of changes into one listing
};

}  // namespace brindlehum
