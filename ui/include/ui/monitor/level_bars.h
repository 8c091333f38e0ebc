// LevelBars: peak levels of channels as bars over a scale in dBFS, with their names and their overs.
#pragma once

#include <QWidget>

#include "monitor/engine/monitor_meter.h"

namespace brindlehum {

// A click, or Space with the focus, clears the overs of all meters.
class LevelBars : public QWidget {
    Q_OBJECT
public:
    enum class Of : uint8_t { bus, speakers };

    LevelBars(MonitorMeter& meter, Of of, QWidget* parent = nullptr);
    QSize sizeHint() const override { return {360, 124}; }
    QSize minimumSizeHint() const override { return {200, 104}; }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    const std::vector<MonitorMeter::Channel>& channels() const;
    double pitch() const;  // from one bar to the next
    double yOf(double db) const;
    double foot() const;
    double lineHeight() const;
    bool isCrowded() const;
    QRectF bar(size_t channel) const;
    void paintScale(QPainter& painter) const;
    void paintChannel(QPainter& painter, size_t channel) const;
    QString textAt(double x) const;

    MonitorMeter& meter_;
    const Of of_;
};

}  // namespace brindlehum
