// TrimStepper: a number box for the trim of a speaker.
#pragma once

#include <QDoubleSpinBox>

namespace brindlehum {

class TrimStepper : public QDoubleSpinBox {
    Q_OBJECT
public:
    explicit TrimStepper(const QString& name);
    QString textFromValue(double value) const override;
    double valueFromText(const QString& text) const override;
    QValidator::State validate(QString& text, int& position) const override;

protected:
    // The wheel scrolls the form unless the box has the keyboard.
    void wheelEvent(QWheelEvent* event) override;
};

}  // namespace brindlehum
