// BusMeter: the levels of the bus's channels, as bars with their names.
#pragma once

#include <QWidget>

namespace brindlehum {

class MonitorMeter;

// A click, or Space with the focus, clears the marks of over-range.
class BusMeter : public QWidget {
    Q_OBJECT
public:
    explicit BusMeter(MonitorMeter& meter, QWidget* parent = nullptr);
    QSize sizeHint() const override { return {420, 84}; }
    QSize minimumSizeHint() const override { return {300, 72}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    MonitorMeter& meter_;
};

}  // namespace brindlehum
