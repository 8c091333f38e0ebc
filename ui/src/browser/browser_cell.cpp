// Cells of the browser: colours, elision and tooltips.
#include "ui/browser/browser_cell.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QToolTip>

#include "ui/browser/browser_table_model.h"
#include "ui/look/theme.h"

namespace brindlehum {

void BrowserCell::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    const bool isName = index.column() == BrowserTableModel::Name;
    if (isName) { option->textElideMode = Qt::ElideMiddle; }
    // Only the name has the full text colour, until the row is selected.
    if (!isName && !(option->state & QStyle::State_Selected)) {
        option->palette.setColor(QPalette::Text, Theme::current().secondary);
    }
}

bool BrowserCell::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                            const QModelIndex& index) {
    // A name's tooltip is its whole path; other cells have one only when their text is cut short.
    const bool isCut = sizeHint(option, index).width() > view->visualRect(index).width();
    if (event->type() != QEvent::ToolTip || isCut || index.column() == BrowserTableModel::Name) {
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    }
    QToolTip::hideText();
    return true;
}

}  // namespace brindlehum
