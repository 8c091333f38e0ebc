// The row's places; a layout would forget the room that its hidden widgets need.
#include "ui/look/fitting_row.h"

#include <QEvent>
#include <QStyle>
#include <algorithm>

namespace brindlehum {

FittingRow::FittingRow(int spacing, QWidget* parent) : QWidget(parent), spacing_(spacing) {
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

void FittingRow::add(QWidget* widget) {
    widget->setParent(this);
    widgets_.push_back(widget);
    arrange();
}

QSize FittingRow::sizeHint() const {
    QSize size(0, 0);
    for (const QWidget* widget : widgets_) {
        const QSize own = widget->sizeHint();
        size = {size.width() + own.width() + (size.isEmpty() ? 0 : spacing_), std::max(size.height(), own.height())};
    }
    return size;
}

QSize FittingRow::minimumSizeHint() const {
    return {0, sizeHint().height()};
}

bool FittingRow::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest) {
        updateGeometry();
        arrange();
    }
    return QWidget::event(event);
}

void FittingRow::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    arrange();
}

void FittingRow::arrange() {
    int left = 0;
    for (QWidget* widget : widgets_) {
        const QRect place(QPoint(left, 0), QSize(widget->sizeHint().width(), height()));
        widget->setGeometry(QStyle::visualRect(layoutDirection(), rect(), place));
        widget->setVisible(place.right() < width());
        left = place.right() + 1 + spacing_;
    }
}

}  // namespace brindlehum
