// FileDrag: hands files to another program by drag and drop.
#pragma once

#include <QByteArray>
#include <QMimeData>
#include <QPixmap>
#include <QPoint>
#include <filesystem>
#include <memory>
#include <vector>

class QWidget;

namespace brindlehum::FileDrag {

// As text/uri-list; the caller owns it.
QMimeData* mimeData(const std::vector<std::filesystem::path>& files);
// The text of a text/uri-list (RFC 2483).
QByteArray uriList(const std::vector<std::filesystem::path>& files);
// What GTK's file managers paste from.
inline constexpr const char* copiedFiles = "x-special/gnome-copied-files";
QByteArray copiedList(const std::vector<std::filesystem::path>& files);
// Puts files on the clipboard, for file managers and for programs that take their paths.
void copy(const std::vector<std::filesystem::path>& files);
// The local files and folders in dropped data, in order.
std::vector<std::filesystem::path> localPaths(const QMimeData& data);

// What follows the pointer, which is at `hotSpot` within it.
struct Picture {
    QPixmap image;
    QPoint hotSpot;
};
// Returns when the drag is over, and whether a target has accepted it; on X11 the target may ask for the
// data only then.
bool run(QWidget* source, std::unique_ptr<QMimeData> data, const Picture& picture);

}  // namespace brindlehum::FileDrag
