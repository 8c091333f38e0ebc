// Paints a symbol in the middle of its label.
#include "ui/look/symbol_label.h"

#include <QPainter>

namespace brindlehum {

SymbolLabel::SymbolLabel(const QString& name, SymbolRole role, QWidget* parent)
    : QWidget(parent), icon_(symbol(name, role, this)) {
    setFixedSize(16, 16);
}

void SymbolLabel::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    icon_.paint(&painter, rect());
}

}  // namespace brindlehum
