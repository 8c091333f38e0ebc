// ValueSlider: a slider over a range of real numbers; a double click or Delete returns it to its rest value.
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
        int parts = 5;  // of a step, which the mouse reaches
    };
    ValueSlider(const QString& name, Range range, QWidget* parent = nullptr);
    void setNumber(double number);  // announces nothing
    double number() const { return value() * resolution_; }
    // The user has moved the slider.
    std::function<void(double)> onEdit;
    // Called instead when the user returns it to rest, for rest values that the slider can't show.
    std::function<void()> onRest;

protected:
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void goToRest();

    double rest_;
    double resolution_;
};

}  // namespace brindlehum
