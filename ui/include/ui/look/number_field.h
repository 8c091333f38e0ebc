// NumberField: a number with its unit that is typed in, or changed by the wheel and the arrow keys.
#pragma once

#include <QDoubleSpinBox>
#include <functional>

namespace brindlehum {

// A double click returns it to its rest value. Enter gives the keys back to the window.
class NumberField : public QDoubleSpinBox {
    Q_OBJECT
public:
    struct Range {
        double low = 0;
        double high = 1;
        double step = 1;
        double rest = 0;
        const char* unit = " dB";
        bool isSigned = true;  // shows a plus
    };
    NumberField(const QString& name, Range range, QWidget* parent = nullptr);
    void setNumber(double number);  // announces nothing, and leaves alone what is being typed
    // The user has changed it.
    std::function<void(double)> onEdit;

    // A comma is a point, too.
    QString textFromValue(double value) const override;
    double valueFromText(const QString& text) const override;
    QValidator::State validate(QString& text, int& position) const override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    double rest_;
    bool signed_;
};

}  // namespace brindlehum
