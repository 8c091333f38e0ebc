// MainWindow: the browser of the library: sidebar, sounds, metadata inspector, and the player below them.
#pragma once

#include <QMainWindow>
#include <QTimer>
#include <filesystem>
#include <optional>

#include "app/app_model.h"

class QSplitter;

namespace brindlehum {

class BannerStack;
class BrowserView;
class DropOverlay;
class InspectorView;
class PlayerView;
class SidebarView;

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    // Heights of the player as long as the user hasn't made it higher, logical pixels.
    static constexpr int playerHeight = 170;
    static constexpr int ambisonicPlayerHeight = 204;

    explicit MainWindow(AppModel& model);
    ~MainWindow() override;

    // Goes to a folder, or loads a file and marks it in its folder. Anything else does nothing.
    void openPath(const std::filesystem::path& path);
    // Ends the application, unless the user wants to see to unsaved edits first.
    void quit();
    void chooseFile();
    void chooseFolder();
    void showInspector(bool shown);
    void showSidebar(bool shown);
    bool showsInspector() const;
    bool showsSidebar() const;
    BrowserView& browser() { return *browser_; }
    SidebarView& sidebar() { return *sidebar_; }
    InspectorView& inspector() { return *inspector_; }
    PlayerView& playerView() { return *player_; }

Q_SIGNALS:
    void partsChanged();  // a part has been shown or hidden

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void changeEvent(QEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void makeParts();
    void connectParts();
    void followPlayer();
    void followRenames(const LibraryModel::Moves& moves);
    void refreshBanners();
    void fitPlayer();
    using Paths = std::vector<std::filesystem::path>;
    // Whether a drop here would add the folders among what is dragged to the library: over the sidebar.
    bool wouldAddToLibrary(const QDropEvent& event) const;
    void showDropTarget(const QDropEvent& event);
    void hideDropTarget();
    int basePlayerHeight() const;
    void restore();
    void save();

    AppModel& model_;
    QSplitter* sideSplit_;       // sidebar | the rest
    QSplitter* playerSplit_;     // browser and inspector / player
    QSplitter* inspectorSplit_;  // browser | inspector
    SidebarView* sidebar_;
    BannerStack* banners_;
    BrowserView* browser_;
    InspectorView* inspector_;
    PlayerView* player_;
    DropOverlay* overlay_;
    DropOverlay* libraryOverlay_;  // of the sidebar
    // Of the drag that is over the window.
    std::filesystem::path dragged_;  // what is opened
    Paths draggedFolders_;
    std::filesystem::path followed_;  // the file that the player was last seen with
    std::filesystem::path asked_;     // the file that was asked for here, which the list needn't be brought to
    int playerExtra_ = 0;
    QTimer saveSoon_;
};

// What a drop of these paths would open: the first folder or audio file.
std::optional<std::filesystem::path> droppable(const std::vector<std::filesystem::path>& paths);

}  // namespace brindlehum
