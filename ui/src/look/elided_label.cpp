// Elides a label's text to its width.
#include "ui/look/elided_label.h"

#include <QEvent>

#include "ui/look/plain_tool_tip.h"

namespace brindlehum {

ElidedLabel::ElidedLabel(Qt::TextElideMode mode, QWidget* parent) : QLabel(parent), mode_(mode) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

void ElidedLabel::setFullText(const QString& text) {
    if (text == full_) { return; }
    full_ = text;
    setAccessibleName(full_);
    updateGeometry();
    elide();
}

QSize ElidedLabel::minimumSizeHint() const {
    return {fontMetrics().horizontalAdvance("…") * 3, fontMetrics().height()};
}

QSize ElidedLabel::sizeHint() const {
    return {fontMetrics().horizontalAdvance(full_) + 2, fontMetrics().height()};
}

void ElidedLabel::resizeEvent(QResizeEvent* event) {
    QLabel::resizeEvent(event);
    elide();
}

void ElidedLabel::changeEvent(QEvent* event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) { elide(); }
}

void ElidedLabel::elide() {
    const QString shown = fontMetrics().elidedText(full_, mode_, width());
    setText(shown);
    setToolTip(shown == full_ ? QString() : plainToolTip(full_));
}

}  // namespace brindlehum
