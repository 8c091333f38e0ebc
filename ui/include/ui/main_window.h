// MainWindow: the player above a plain folder list, with the menu bar.
#pragma once

#include <QMainWindow>
#include <QTimer>
#include <filesystem>
#include <optional>

#include "app/app_model.h"

class QSplitter;

namespace brindlehum {

class DropOverlay;
class FolderBrowser;
class PlayerView;

class MainWindow : public QMainWindow {
    Q_OBJECT
public:
    explicit MainWindow(AppModel& model);
    ~MainWindow() override;

    // Goes to a folder, or loads a file and marks it in its folder. Anything else does nothing.
    void openPath(const std::filesystem::path& path);
    void chooseFile();
    void chooseFolder();
    FolderBrowser& browser() { return *browser_; }
    PlayerView& playerView() { return *player_; }

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    void load(const std::filesystem::path& file);
    void followPlayer();
    void restore();
    void save();

    AppModel& model_;
    QSplitter* splitter_;
    PlayerView* player_;
    FolderBrowser* browser_;
    DropOverlay* overlay_;
    std::filesystem::path shown_;  // the file that the list was last brought to
    QTimer saveSoon_;
};

// What a drop of these paths would open: the first folder or audio file.
std::optional<std::filesystem::path> droppable(const std::vector<std::filesystem::path>& paths);

}  // namespace brindlehum
