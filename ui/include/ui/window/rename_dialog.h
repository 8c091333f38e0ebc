// The rename dialog: every file's name now and then, before anything is renamed.
#pragma once

#include <QDialog>

#include "library/model/ucs_rename.h"

class QTreeWidget;

namespace brindlehum {

class RenameDialog : public QDialog {
    Q_OBJECT
public:
    // `unsaved` edits of metadata aren't part of the new names, and the dialog says so.
    RenameDialog(const UCSRenames& renames, bool unsaved, QWidget* parent = nullptr);

private:
    void fill(const UCSRenames& renames);

    QTreeWidget* list_;
};

// Shows the dialog and returns whether the user confirmed.
bool askRename(QWidget* parent, const UCSRenames& renames, bool unsaved);

}  // namespace brindlehum
