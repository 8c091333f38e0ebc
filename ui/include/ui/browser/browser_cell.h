// BrowserCell: paints one cell of the browser: a long name is elided in the middle, and an elided text is also the
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
