// MeterView: the levels of the outputs as bars beside the waveform.
#pragma once

#include <QWidget>

namespace brindlehum {

class OutputMeter;

// A click, or Space with the focus, clears the marks of over-range.
class MeterView : public QWidget {
    Q_OBJECT
public:
    explicit MeterView(OutputMeter& meter, QWidget* parent = nullptr);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {sizeHint().width(), 0}; }
    // "L -3.2 dB, highest -1.0 dB, over" for the output at this place.
    QString textAt(int x) const;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void paintScale(QPainter& painter) const;
    void paintOutput(QPainter& painter, size_t output) const;
    int pitch() const;
    QRectF bar(size_t output) const;
    double yOf(double db) const;
    void refresh();

    OutputMeter& meter_;
    size_t shown_ = 0;  // outputs at the last refresh
};

}  // namespace brindlehum
