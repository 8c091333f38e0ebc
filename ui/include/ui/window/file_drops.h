// FileDrops: what a window does with files and folders that are dropped on it.
#pragma once

#include <QObject>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

class QDropEvent;
class QWidget;

namespace brindlehum {

class DiskWork;
class DropOverlay;

// A drop on the sidebar adds its folders to the library; anywhere else on the window it opens the first folder or
// audio file, or fetches the sound of a web link. While something is dragged over the window, an overlay says which of
// the two a drop would do.
class FileDrops : public QObject {
    Q_OBJECT
public:
    using Path = std::filesystem::path;
    // Lives as long as `window`; `disk` must outlive it.
    FileDrops(QWidget& window, QWidget& sidebar, DiskWork& disk);

    std::function<void(const Path& path)> open;
    std::function<void(const std::vector<Path>& folders)> addToLibrary;
    std::function<void(const std::string& link)> openLink;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void enter(QDropEvent& event);
    void move(QDropEvent& event);
    void drop(QDropEvent& event);
    bool isForLibrary(const QDropEvent& event) const;
    void showTarget(const QDropEvent& event);
    void hideTarget();

    QWidget& window_;
    QWidget& sidebar_;
    DiskWork& disk_;
    DropOverlay* overlay_;
    DropOverlay* libraryOverlay_;
    // Of the drag that is over the window.
    Path opened_;
    std::string link_;  // empty without one, or beside a file
    std::vector<Path> folders_;
};

// The first folder or audio file among these, which a drop would open. `folders`: those that are folders.
std::optional<std::filesystem::path> droppable(const std::vector<std::filesystem::path>& paths,
                                               const std::vector<std::filesystem::path>& folders);

}  // namespace brindlehum
