// The entries of the export menus.
#include "ui/player/drag_menu.h"

#include <QCoreApplication>
#include <QMenu>
#include <optional>

#include "mix/player/drag_out.h"
#include "ui/look/menu_button.h"
#include "ui/player/export_copy.h"

namespace brindlehum {
namespace {

QString help(const DragExport& mode) {
    switch (mode.kind) {
        case DragExport::Kind::original:
            return QCoreApplication::translate("DragMenu", "The file itself, or a cut of it with all its channels");
        case DragExport::Kind::bed:
            return QCoreApplication::translate("DragMenu", "The sound laid out for these speakers, and nothing added");
        case DragExport::Kind::binaural:
            return QCoreApplication::translate("DragMenu", "Two channels for headphones");
        case DragExport::Kind::upmix:
            return QCoreApplication::translate("DragMenu",
                                               "Spread over these speakers by the upmix that is switched on");
    }
    return {};
}

}  // namespace

void fillDragForms(QMenu& menu, DragOut& dragOut) {
    menu.setToolTipsVisible(true);
    std::optional<DragExport::Kind> last;
    for (const auto mode : dragOut.dragOptions()) {
        if (last && *last != mode.kind) { menu.addSeparator(); }
        last = mode.kind;
        addChoice(menu, QString::fromStdString(dragOut.formName(mode)), mode == dragOut.dragExport(), [&dragOut, mode] {
            dragOut.setDragExport(mode);
        })->setToolTip(help(mode));
    }
}

void fillExportMenu(QMenu& menu, DragOut& dragOut, ExportCopy& copy) {
    menu.addAction(QCoreApplication::translate("DragMenu", "Copy Sound"), &copy, [&copy] { copy.copy(true); });
    menu.addAction(QCoreApplication::translate("DragMenu", "Export to Pulls Folder"), &dragOut,
                   [&dragOut] { dragOut.exportToPulls(true); });
    fillDragForms(*menu.addMenu(QCoreApplication::translate("DragMenu", "Drag As")), dragOut);
}

}  // namespace brindlehum
