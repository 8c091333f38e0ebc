// Paints the veil over a drop target.
#include "ui/window/drop_overlay.h"

#include <QEvent>
#include <QPainter>

#include "ui/look/theme.h"

namespace brindlehum {

DropOverlay::DropOverlay(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAccessibleName(tr("Drop target"));
    parent->installEventFilter(this);
    hide();
}

void DropOverlay::showFor(const QString& text) {
    text_ = text;
    setGeometry(parentWidget()->rect());
    raise();
    show();
    update();
}

void DropOverlay::paintEvent(QPaintEvent* /*event*/) {
    const Theme& theme = Theme::current();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor veil = theme.window;
    veil.setAlpha(215);
    painter.setBrush(veil);
    painter.setPen(QPen(theme.accent, 3, Qt::DashLine));
    painter.drawRoundedRect(QRectF(rect()).adjusted(10, 10, -10, -10), 12, 12);
    QFont font = painter.font();
    font.setPointSizeF(16);
    font.setWeight(QFont::DemiBold);
    painter.setFont(font);
    painter.setPen(theme.text);
    painter.drawText(rect().adjusted(24, 24, -24, -24), Qt::AlignCenter | Qt::TextWordWrap, text_);
}

bool DropOverlay::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parent() && event->type() == QEvent::Resize) { setGeometry(parentWidget()->rect()); }
    return QWidget::eventFilter(watched, event);
}

}  // namespace brindlehum
