// FileDrag: hands files to another program by drag and drop.
#pragma once

#include <QPixmap>
#include <QPoint>
#include <filesystem>
#include <vector>

class QMimeData;
class QWidget;

namespace brindlehum::FileDrag {

// As text/uri-list; the caller owns it.
QMimeData* mimeData(const std::vector<std::filesystem::path>& files);
// The local files and folders in dropped data, in order.
std::vector<std::filesystem::path> localPaths(const QMimeData& data);

// Returns when the drag is over. `picture` follows the pointer, which is at `hotSpot` within it.
void run(QWidget* source, const std::filesystem::path& file, const QPixmap& picture, const QPoint& hotSpot);

}  // namespace brindlehum::FileDrag
