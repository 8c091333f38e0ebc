// SidebarCell: paints one line of the sidebar: a section's name with its chevron, or a row with icon and count.
#pragma once

#include <QStyledItemDelegate>

#include "ui/sidebar/sidebar_rows.h"

namespace brindlehum {

class SidebarCell : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    void paintSection(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const;
    void paintRow(QPainter& painter, const QStyleOptionViewItem& option, const SidebarRow& row) const;
};

}  // namespace brindlehum
