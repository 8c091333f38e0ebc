// BrowserCell: paints and explains one cell of the browser: names lose their middle, and a text cut short is its
// tooltip.
#pragma once

#include <QStyledItemDelegate>

namespace brindlehum {

class BrowserCell : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

}  // namespace brindlehum
