// TimeRuler: the time axis above a waveform, with the time under the pointer.
#pragma once

#include <QWidget>

namespace brindlehum {

class TimeRuler : public QWidget {
    Q_OBJECT
public:
    explicit TimeRuler(QWidget* parent = nullptr);
    // The times at the left edge and from edge to edge.
    void setSeconds(double first, double seconds);
    // A negative time means that the pointer isn't over the waveform.
    void setHover(double seconds);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintTicks(QPainter& painter) const;
    void paintHover(QPainter& painter) const;
    int xOf(double seconds) const { return int((seconds - first_) / seconds_ * width()); }
    double first_ = 0;
    double seconds_ = 0;
    double hover_ = -1;
};

}  // namespace brindlehum
