// Converts between a slider's steps and its real numbers.
#include "ui/look/value_slider.h"

#include <QKeyEvent>
#include <QSignalBlocker>
#include <cmath>

namespace brindlehum {

ValueSlider::ValueSlider(const QString& name, Range range, QWidget* parent)
    : QSlider(Qt::Horizontal, parent), rest_(range.rest), resolution_(range.step / range.parts) {
    setAccessibleName(name);
    setFocusPolicy(Qt::StrongFocus);
    setRange(int(std::lround(range.low / resolution_)), int(std::lround(range.high / resolution_)));
    setSingleStep(range.parts);
    setPageStep(10 * range.parts);
    setNumber(range.rest);
    connect(this, &QSlider::valueChanged, this, [this] {
        if (onEdit) { onEdit(number()); }
    });
}

void ValueSlider::setNumber(double number) {
    const QSignalBlocker quiet(this);
    // Ignore a value that rounds to the handle's own position, or the handle would jump under the pointer.
    if (!isSliderDown()) { setValue(int(std::lround(number / resolution_))); }
}

void ValueSlider::goToRest() {
    if (onRest) { return onRest(); }
    setValue(int(std::lround(rest_ / resolution_)));
}

void ValueSlider::mouseDoubleClickEvent(QMouseEvent* /*event*/) {
    goToRest();
}

void ValueSlider::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Delete) { return QSlider::keyPressEvent(event); }
    goToRest();
}

}  // namespace brindlehum
