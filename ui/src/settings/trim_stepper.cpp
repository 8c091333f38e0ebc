// Reads and writes trims as "+1.5 dB".
#include "ui/settings/trim_stepper.h"

#include <QWheelEvent>

#include "ui/look/tabular_font.h"
#include "ui/settings/profile_edits.h"

namespace brindlehum {
namespace {

constexpr int stepperWidth = 110;  // logical pixels

QString number(QString text) {
    return text.remove("dB", Qt::CaseInsensitive).trimmed();
}

}  // namespace

TrimStepper::TrimStepper(const QString& name) {
    setRange(ProfileEdits::minTrimDB, ProfileEdits::maxTrimDB);
    setSingleStep(ProfileEdits::trimStepDB);
    setDecimals(1);
    setFixedWidth(stepperWidth);
    setFont(tabularFont(9.5));
    setKeyboardTracking(false);
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(name);
}

QString TrimStepper::textFromValue(double value) const {
    // Adding zero turns a negative zero into "+0.0".
    return QString::asprintf("%+.1f dB", value + 0.0);
}

double TrimStepper::valueFromText(const QString& text) const {
    return number(text).toDouble();
}

QValidator::State TrimStepper::validate(QString& text, int& /*position*/) const {
    bool fine = false;
    const double value = number(text).toDouble(&fine);
    if (!fine) { return QValidator::Intermediate; }
    return value >= minimum() && value <= maximum() ? QValidator::Acceptable : QValidator::Intermediate;
}

void TrimStepper::wheelEvent(QWheelEvent* event) {
    if (hasFocus()) {
        QDoubleSpinBox::wheelEvent(event);
    } else {
        event->ignore();
    }
}

}  // namespace brindlehum
