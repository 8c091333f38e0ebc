// Converts between a slider's steps and its real numbers.
#include "ui/look/value_slider.h"

#include <QSignalBlocker>
#include <cmath>

namespace brindlehum {

ValueSlider::ValueSlider(const QString& name, Range range, QWidget* parent)
    : QSlider(Qt::Horizontal, parent), rest_(range.rest), resolution_(range.step / 5) {
    setAccessibleName(name);
    setFocusPolicy(Qt::StrongFocus);
    setRange(int(std::lround(range.low / resolution_)), int(std::lround(range.high / resolution_)));
    setSingleStep(5);
    setPageStep(50);
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

void ValueSlider::mouseDoubleClickEvent(QMouseEvent* /*event*/) {
    setValue(int(std::lround(rest_ / resolution_)));
}

}  // namespace brindlehum
