// ValueSlider: a slider over a range of real numbers; a double click returns it to its rest value.
#pragma once

#include <QSlider>
#include <functional>

namespace brindlehum {

class ValueSlider : public QSlider {
    Q_OBJECT
public:
    struct Range {
        double low = 0;
        double high = 1;
        double step = 1;  // of an arrow key; ten of them with Page Up and Page Down
        double rest = 0;
    };
    ValueSlider(const QString& name, Range range, QWidget* parent = nullptr);
    void setNumber(double number);  // announces nothing
    double number() const { return value() * resolution_; }
    // The user has moved the slider.
    std::function<void(double)> onEdit;

protected:
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    double rest_;
    double resolution_;
};

}  // namespace brindlehum
