// Qt's folder dialog with several choices.
#include "ui/window/folder_chooser.h"

#include <QAbstractItemView>
#include <QCoreApplication>
#include <QFileDialog>

#include "ui/look/dialog_start.h"
#include "ui/look/path_text.h"

namespace brindlehum {

std::vector<std::filesystem::path> chooseLibraryFolders(QWidget* parent, const std::filesystem::path& start,
                                                        DiskWork& disk) {
    QFileDialog dialog(parent, QCoreApplication::translate("FolderChooser", "Add to Library"),
                       dialogStart(start, disk));
    dialog.setFileMode(QFileDialog::Directory);
    dialog.setOption(QFileDialog::ShowDirsOnly);
    dialog.setLabelText(QFileDialog::Accept, QCoreApplication::translate("FolderChooser", "Add to Library"));
    // The desktop's own dialogs choose one folder at a time; the lists of Qt's dialog can choose several.
    dialog.setOption(QFileDialog::DontUseNativeDialog);
    for (auto* view : dialog.findChildren<QAbstractItemView*>()) {
        if (view->objectName() == QLatin1String("listView") || view->objectName() == QLatin1String("treeView")) {
            view->setSelectionMode(QAbstractItemView::ExtendedSelection);
        }
    }
    std::vector<std::filesystem::path> folders;
    if (dialog.exec() != QDialog::Accepted) { return folders; }
    for (const auto& folder : dialog.selectedFiles()) { folders.push_back(pathOfText(folder)); }
    return folders;
}

}  // namespace brindlehum
