// Asks the disk before a dialog does.
#include "ui/look/dialog_start.h"

#include <QDir>

#include "platform/disk_work.h"
#include "ui/look/path_text.h"

namespace brindlehum {

QString dialogStart(const std::filesystem::path& folder, DiskWork& disk) {
    const bool answers = disk.isFolder(folder).has_value();
    return answers ? pathText(folder) : QDir::homePath();
}

}  // namespace brindlehum
