// BrowserView: the folder or the search results of the library as a table, with the bar above.
#pragma once

#include <QFileSystemWatcher>
#include <QTimer>
#include <QWidget>
#include <optional>

#include "app/app_model.h"
#include "ui/browser/browser_menu.h"
#include "ui/browser/browser_state.h"

class QStackedLayout;

namespace brindlehum {

class BrowserBar;
class BrowserTable;
class EmptyState;
class ElidedLabel;

class BrowserView : public QWidget {
    Q_OBJECT
public:
    explicit BrowserView(AppModel& model, QWidget* parent = nullptr);

    BrowserBar& bar() { return *bar_; }
    BrowserTable& table() { return *table_; }
    // Shows a folder, or marks a file in its folder once that is listed; nothing is played.
    void openFolder(const std::filesystem::path& folder);
    void reveal(const std::filesystem::path& file);
    // Plays a sound, opens a folder.
    void activate(const BrowserEntry& entry);
    BrowserActions& actions() { return actions_; }
    void focusSearch();

Q_SIGNALS:
    // A sound of the list is about to be loaded.
    void loadAsked(const std::filesystem::path& file);
    void selectionMoved();
    void addFolderAsked();

private:
    void connectTable();
    void refresh();
    void showState();
    BrowserState::Snapshot snapshot() const;
    void auditionChosen();
    void act();
    void watchFolder();
    void markWanted();
    void openMenu(const QPoint& position);

    AppModel& model_;
    LibraryModel& library_;
    BrowserBar* bar_;
    BrowserTable* table_;
    QStackedLayout* stack_;
    EmptyState* empty_;
    ElidedLabel* message_;
    BrowserActions actions_;
    BrowserState state_;
    bool searching_ = false;                       // what the rows are of
    std::string shownFor_;                         // the folder or the question that the rows are of
    std::optional<std::filesystem::path> wanted_;  // to be marked once it is listed
    QFileSystemWatcher watcher_;
    QTimer settle_;  // gathers a burst of changes into one listing
};

}  // namespace brindlehum
