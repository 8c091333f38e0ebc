// Mouse and keys of the sidebar's list.
#include "ui/sidebar/sidebar_tree.h"

#include <QKeyEvent>
#include <QMouseEvent>

#include "ui/look/typed_text.h"
#include "ui/sidebar/sidebar_cell.h"
#include "ui/sidebar/sidebar_model.h"

namespace brindlehum {

SidebarTree::SidebarTree(SidebarModel& model, QWidget* parent) : QTreeView(parent) {
    setObjectName("sidebarTree");
    setModel(&model);
    setItemDelegate(new SidebarCell(this));
    setAccessibleName(tr("Library and places"));
    setHeaderHidden(true);
    setRootIsDecorated(false);
    setIndentation(0);
    setExpandsOnDoubleClick(false);
    setSelectionMode(QAbstractItemView::NoSelection);
    setTabKeyNavigation(false);
    setMouseTracking(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setContextMenuPolicy(Qt::CustomContextMenu);
    expandAll();
}

void SidebarTree::choose(const QModelIndex& index) {
    if (!index.isValid()) { return; }
    if (index.parent().isValid()) {
        Q_EMIT chosen(index);
    } else {
        setExpanded(index, !isExpanded(index));
    }
}

void SidebarTree::keyPressEvent(QKeyEvent* event) {
    const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    const int key = event->key();
    if (const QString text = typedText(*event); !text.isEmpty()) {
        Q_EMIT typed(text);
        return event->accept();
    }
    if (!plain || (key != Qt::Key_Return && key != Qt::Key_Enter && key != Qt::Key_Space)) {
        return QTreeView::keyPressEvent(event);
    }
    if (!event->isAutoRepeat()) { choose(currentIndex()); }
    event->accept();
}

void SidebarTree::mouseReleaseEvent(QMouseEvent* event) {
    QTreeView::mouseReleaseEvent(event);
    const QModelIndex index = indexAt(event->pos());
    if (event->button() == Qt::LeftButton && index == currentIndex()) { choose(index); }
}

// Treats the second click of a double click as a click, or a facet chosen and cleared quickly would stay chosen.
void SidebarTree::mouseDoubleClickEvent(QMouseEvent* event) {
    QTreeView::mousePressEvent(event);
}

}  // namespace brindlehum
