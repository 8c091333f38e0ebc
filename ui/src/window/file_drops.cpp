// Handles a window's drag and drop events.
#include "ui/window/file_drops.h"

#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>
#include <algorithm>

#include "app/link_loader.h"
#include "audio/probe/audio_file_info.h"
#include "platform/disk_work.h"
#include "ui/look/file_drag.h"
#include "ui/window/drop_overlay.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;

std::vector<fs::path> foldersAmong(std::vector<fs::path> paths) {
    std::erase_if(paths, [](const fs::path& path) {
        std::error_code error;
        return !fs::is_directory(path, error);
    });
    return paths;
}

// The first web link of a drag; empty without one.
std::string linkOf(const QMimeData& data) {
    for (const QUrl& url : data.urls()) {
        if (const auto link = LinkLoader::linkIn(url.toEncoded().toStdString())) { return *link; }
    }
    return {};
}

}  // namespace

std::optional<fs::path> droppable(const std::vector<fs::path>& paths, const std::vector<fs::path>& folders) {
    const auto found = std::ranges::find_if(paths, [&](const fs::path& path) {
        return std::ranges::find(folders, path) != folders.end() || AudioFileInfo::isAudioPath(path);
    });
    return found == paths.end() ? std::nullopt : std::optional(*found);
}

FileDrops::FileDrops(QWidget& window, QWidget& sidebar, DiskWork& disk)
    : QObject(&window),
      window_(window),
      sidebar_(sidebar),
      disk_(disk),
      overlay_(new DropOverlay(&window)),
      libraryOverlay_(new DropOverlay(&sidebar)) {
    libraryOverlay_->setAccessibleName(tr("Library drop target"));
    window.setAcceptDrops(true);
    window.installEventFilter(this);
}

bool FileDrops::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::DragEnter:
            enter(*static_cast<QDropEvent*>(event));
            return true;
        case QEvent::DragMove:
            move(*static_cast<QDropEvent*>(event));
            return true;
        case QEvent::DragLeave:
            hideTarget();
            return true;
        case QEvent::Drop:
            drop(*static_cast<QDropEvent*>(event));
            return true;
        default:
            return QObject::eventFilter(watched, event);
    }
}

// Asks the disk once for a drag, not for each move of the pointer. Of one that doesn't answer, names decide.
void FileDrops::enter(QDropEvent& event) {
    event.ignore();
    if (event.source()) { return; }  // our own files on their way out
    const auto paths = FileDrag::localPaths(*event.mimeData());
    folders_ = disk_.ask([paths] { return foldersAmong(paths); }).value_or(std::vector<Path>());
    const auto path = droppable(paths, folders_);
    link_ = path ? std::string() : linkOf(*event.mimeData());
    if (!path && link_.empty()) { return; }
    opened_ = path.value_or(fs::path());
    move(event);
}

void FileDrops::move(QDropEvent& event) {
    event.setDropAction(Qt::CopyAction);
    event.accept();
    showTarget(event);
}

void FileDrops::drop(QDropEvent& event) {
    hideTarget();
    event.setDropAction(Qt::CopyAction);
    event.accept();
    if (isForLibrary(event)) {
        addToLibrary(folders_);
    } else if (!link_.empty()) {
        openLink(link_);
    } else {
        open(opened_);
    }
}

bool FileDrops::isForLibrary(const QDropEvent& event) const {
    const QPoint at = sidebar_.mapFrom(&window_, event.position().toPoint());
    return !folders_.empty() && sidebar_.isVisible() && sidebar_.rect().contains(at);
}

void FileDrops::showTarget(const QDropEvent& event) {
    if (isForLibrary(event)) {
        overlay_->hide();
        return libraryOverlay_->showFor(tr("Drop to add to the library"));
    }
    libraryOverlay_->hide();
    const bool opensFolder = std::ranges::find(folders_, opened_) != folders_.end();
    if (!link_.empty()) { return overlay_->showFor(tr("Drop to download and play the link's sound")); }
    overlay_->showFor(opensFolder ? tr("Drop to open the folder") : tr("Drop to load the file"));
}

void FileDrops::hideTarget() {
    overlay_->hide();
    libraryOverlay_->hide();
}

}  // namespace brindlehum
