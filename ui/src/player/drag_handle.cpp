// Starts the drag.
#include "ui/player/drag_handle.h"

#include <QApplication>
#include <QMouseEvent>

#include "mix/player/pull_source.h"
#include "ui/look/icons.h"
#include "ui/player/drag_session.h"
#include "ui/player/export_picture.h"

namespace brindlehum {

DragHandle::DragHandle(QWidget* parent) : QToolButton(parent) {
    setSymbol(*this, "drag");
    setText(tr("Drag"));
    setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    setToolTip(tr("Drag the whole file into your DAW (uses the Drag mode)"));
    setAccessibleName(tr("Drag handle"));
    setAccessibleDescription(tr("Drag the whole file into your DAW. Space or Enter copies the file instead."));
    setFocusPolicy(Qt::StrongFocus);
    setCursor(Qt::OpenHandCursor);
}

void DragHandle::mousePressEvent(QMouseEvent* event) {
    event->accept();
    if (event->button() != Qt::LeftButton || !drags_) { return; }
    pressedAt_ = event->pos();
    drags_->press(selectionOnly_);
}

void DragHandle::mouseMoveEvent(QMouseEvent* event) {
    if (!pressedAt_ || (event->pos() - *pressedAt_).manhattanLength() <= QApplication::startDragDistance() / 2) {
        return;
    }
    pressedAt_.reset();
    const QString form = QString::fromStdString(drags_->source().formName());
    drags_->run(this, exportPicture(picture ? picture() : QPixmap(), {8, 8}, form));
}

void DragHandle::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !pressedAt_) { return; }
    pressedAt_.reset();
    drags_->release();
}

}  // namespace brindlehum
