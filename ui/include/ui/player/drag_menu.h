// The menus of what leaves the player: the forms of a drag, and the ways out for users who don't drag.
#pragma once

class QMenu;

namespace brindlehum {

class DragOut;
class ExportCopy;

// One choice for each form on offer: the original, beds, binaural and upmixes apart from each other.
void fillDragForms(QMenu& menu, DragOut& dragOut);
// Copy, export and the forms, of the selection if there is one.
void fillExportMenu(QMenu& menu, DragOut& dragOut, ExportCopy& copy);

}  // namespace brindlehum
