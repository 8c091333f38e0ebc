// MainWindow: sidebar, browser, metadata inspector, and the player below them.
#pragma once

#include <QMainWindow>
#include <QTimer>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "library/model/ucs_rename.h"
#include "ui/window/player_height.h"
#include "ui/window/recent_files.h"

class QSplitter;

namespace brindlehum {

struct Banner;
class AppModel;
class BannerStack;
class BrowserView;
class GripSplitter;
class InspectorView;
class PlayerView;
class SidebarView;

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit MainWindow(AppModel& model);
    ~MainWindow() override;

    // Opens a folder, or loads an audio file and marks it in its folder. Ignores anything else.
    void openPath(const std::filesystem::path& path);
    // Ends the application, unless there are unsaved edits that the user wants to keep.
    void quit();
    // Asks about the editor's unsaved edits, and calls `proceed` unless the user wants to stay.
    std::function<void(const std::function<void()>& proceed)> leaveEditor;
    // The question before a folder leaves the library and takes something along, which a test may answer.
    std::function<bool(const QString& question, const QString& losses)> confirmRemoval;
    // Whether the application can be seen and stopped while this window is closed. A test may answer.
    std::function<bool()> hasTray;
    // The question before files get their UCS names, with all that would happen, which a test may answer.
    std::function<bool(const UCSRenames& renames)> confirmRename;
    // Shows what a rename would do with these files, and renames them once the user confirms.
    void renameToUCS(const std::vector<std::filesystem::path>& files);
    // Shows where the bars of a piece are, and lets the user set them.
    void setBars(const std::filesystem::path& file);
    void chooseFile();
    void chooseFolder();
    void showInspector(bool shown);
    void showSidebar(bool shown);
    bool showsInspector() const;
    bool showsSidebar() const;
    BrowserView& browser() { return *browser_; }
    SidebarView& sidebar() { return *sidebar_; }
    InspectorView& inspector() { return *inspector_; }
    RecentFiles& recentFiles() { return recentFiles_; }
    PlayerView& playerView() { return *player_; }

Q_SIGNALS:
    void partsChanged();  // a part has been shown or hidden

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void makeParts();
    void makeDrops();
    void connectParts();
    void refreshBanners();
    bool mayRemove(const std::string& root, bool losesWords);
    void addFileManagerBanners(std::vector<Banner>& banners);
    void addFitBanner(std::vector<Banner>& banners);
    QString shownFolder();  // where dialogs start
    PlayerHeight::Room playerRoom() const;
    void fitPlayer();
    void restore();
    void save();

    AppModel& model_;
    QSplitter* sideSplit_;       // sidebar | the rest
    GripSplitter* playerSplit_;  // browser and inspector / player
    QSplitter* inspectorSplit_;  // browser | inspector
    SidebarView* sidebar_;
    BannerStack* banners_;
    BrowserView* browser_;
    InspectorView* inspector_;
    PlayerView* player_;
    // Logical pixels.
    int playerExtra_ = 0;   // that the user has added to the player's automatic height
    int fittedHeight_ = 0;  // the automatic height at the last fit
    QTimer saveSoon_;
    RecentFiles recentFiles_;
    std::optional<std::string> readProblem_;  // of the settings; dismissed by the user
};

}  // namespace brindlehum
