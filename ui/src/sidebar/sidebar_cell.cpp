// Paints sections and rows of the sidebar.
#include "ui/sidebar/sidebar_cell.h"

#include <QLocale>
#include <QPainter>

#include "ui/look/icons.h"
#include "ui/look/theme.h"
#include "ui/sidebar/sidebar_model.h"

namespace brindlehum {
namespace {

// Logical pixels.
constexpr int rowHeight = 28;
constexpr int sectionHeight = 34;
constexpr int sectionGap = 8;  // above its text
constexpr int inset = 8;
constexpr int iconSize = 16;
constexpr int gap = 8;
constexpr double captionPoints = 8.5;

QFont caption(QFont font) {
    font.setPointSizeF(captionPoints);
    return font;
}

}  // namespace

QSize SidebarCell::sizeHint(const QStyleOptionViewItem& /*option*/, const QModelIndex& index) const {
    return {0, index.parent().isValid() ? rowHeight : sectionHeight};
}

void SidebarCell::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const auto* row = static_cast<const SidebarModel*>(index.model())->row(index);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (row) {
        paintRow(*painter, option, *row);
    } else {
        paintSection(*painter, option, index);
    }
    if (option.state & QStyle::State_HasFocus) {
        painter->setBrush(Qt::NoBrush);
        painter->setPen(QPen(Theme::current().accent, 2));
        painter->drawRoundedRect(QRectF(option.rect).adjusted(2, row ? 1 : sectionGap, -2, -1), 6, 6);
    }
    painter->restore();
}

void SidebarCell::paintSection(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    QFont font = caption(option.font);
    font.setWeight(QFont::DemiBold);
    painter.setFont(font);
    painter.setPen(Theme::current().secondary);
    const QRect area = option.rect.adjusted(inset, sectionGap, -inset, 0);
    painter.drawText(area, Qt::AlignVCenter | Qt::AlignLeft, index.data().toString());
    const bool open = option.state & QStyle::State_Open;
    const QRect chevron(area.right() - 11, area.center().y() - 5, 12, 12);
    symbol(open ? "chevron-open" : "chevron-closed", SymbolRole::secondary).paint(&painter, chevron);
}

void SidebarCell::paintRow(QPainter& painter, const QStyleOptionViewItem& option, const SidebarRow& row) const {
    const Theme& theme = Theme::current();
    const bool hovered = option.state & QStyle::State_MouseOver;
    if (row.selected || hovered) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(row.selected ? theme.accentGround : theme.hover);
        painter.drawRoundedRect(QRectF(option.rect).adjusted(2, 1, -2, -1), 6, 6);
    }
    QRect area = option.rect.adjusted(inset, 0, -inset, 0);
    if (!row.icon.isEmpty()) {
        const QRect icon(area.left(), area.center().y() - iconSize / 2 + 1, iconSize, iconSize);
        symbol(row.icon, row.selected ? SymbolRole::control : SymbolRole::secondary).paint(&painter, icon);
        area.setLeft(icon.right() + gap);
    }
    if (row.count) {
        const QString text = QLocale().toString(static_cast<qlonglong>(*row.count));
        painter.setFont(caption(option.font));
        painter.setPen(row.selected ? theme.text : theme.secondary);
        painter.drawText(area, Qt::AlignVCenter | Qt::AlignRight, text);
        area.setRight(area.right() - painter.fontMetrics().horizontalAdvance(text) - gap);
    }
    if (row.busy || !row.problem.isEmpty()) {
        const QRect icon(area.right() - iconSize + 1, area.center().y() - iconSize / 2 + 1, iconSize, iconSize);
        const QIcon sign =
            row.busy ? symbol("hourglass", SymbolRole::secondary) : symbol("warning", SymbolRole::warning);
        sign.paint(&painter, icon);
        area.setRight(icon.left() - gap);
    }
    painter.setFont(option.font);
    painter.setPen(row.kind == SidebarRow::Kind::addFolder && !row.selected ? theme.secondary : theme.text);
    painter.drawText(area, Qt::AlignVCenter | Qt::AlignLeft,
                     option.fontMetrics.elidedText(row.text, Qt::ElideMiddle, area.width()));
}

}  // namespace brindlehum
