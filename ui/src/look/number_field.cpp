// Reads what is typed as a number.
#include "ui/look/number_field.h"

#include <QEvent>
#include <QLineEdit>
#include <QSignalBlocker>

namespace brindlehum {

NumberField::NumberField(const QString& name, Range range, QWidget* parent)
    : QDoubleSpinBox(parent), rest_(range.rest), signed_(range.isSigned) {
    setAccessibleName(name);
    setButtonSymbols(NoButtons);
    setLocale(QLocale::c());
    setDecimals(1);
    setRange(range.low, range.high);
    setSingleStep(range.step);
    setSuffix(range.unit);
    setKeyboardTracking(false);
    setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    setValue(range.rest);
    lineEdit()->installEventFilter(this);
    connect(this, &QDoubleSpinBox::valueChanged, this, [this](double value) {
        if (onEdit) { onEdit(value); }
    });
    connect(lineEdit(), &QLineEdit::returnPressed, this, &QWidget::clearFocus);
}

// Adding zero turns a negative zero into "+0.0".
QString NumberField::textFromValue(double value) const {
    return signed_ ? QString::asprintf("%+.1f", value + 0.0) : QString::asprintf("%.1f", value);
}

double NumberField::valueFromText(const QString& text) const {
    return QDoubleSpinBox::valueFromText(QString(text).replace(',', '.'));
}

QValidator::State NumberField::validate(QString& text, int& position) const {
    text.replace(',', '.');
    return QDoubleSpinBox::validate(text, position);
}

void NumberField::setNumber(double number) {
    const QSignalBlocker quiet(this);
    if (!lineEdit()->isModified() || !hasFocus()) { setValue(number); }
}

bool NumberField::eventFilter(QObject* watched, QEvent* event) {
    if (watched != lineEdit() || event->type() != QEvent::MouseButtonDblClick) {
        return QDoubleSpinBox::eventFilter(watched, event);
    }
    setValue(rest_);
    return true;
}

}  // namespace brindlehum
