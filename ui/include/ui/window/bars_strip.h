// BarsStrip: a part of a piece with its bars; a click says where a bar starts.
#pragma once

#include <QImage>
#include <QWidget>
#include <optional>

#include "mix/player/visible_range.h"
#include "ui/picture/analysis_picture.h"

namespace brindlehum {

// Left and Right move the start of the bar by a beat, the wheel scrolls, Ctrl+wheel and the keys + and - zoom, Space
// plays.
class BarsStrip : public QWidget {
    Q_OBJECT
public:
    static constexpr double longestView = 120;  // seconds; beyond, bars would be too narrow for a click

    explicit BarsStrip(QWidget* parent = nullptr);

    // What the content borrows must last until the next call. Keeps the part in view unless the length is another.
    void setContent(const AnalysisPicture::Content& content);
    // The place that the user has set, seconds.
    void setDownbeat(std::optional<double> seconds);
    // Of this piece, if the player has it.
    void setPlayhead(std::optional<double> seconds);

    const VisibleRange& visibleRange() const { return visible_; }  // in samples of the content
    void setVisibleRange(const VisibleRange& visible);
    // The time of a column: that of a beat, if one is drawn near it.
    double timeAt(double x) const;
    QSize sizeHint() const override { return {960, 240}; }
    QSize minimumSizeHint() const override { return {320, 140}; }

Q_SIGNALS:
    void chosen(double seconds);
    void viewChanged();
    void playAsked();  // or stopped

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    double xOf(double seconds) const;
    void stale();
    void paintMark(QPainter& painter, double seconds, const QColor& color, const QString& label) const;
    std::optional<double> beatBeside(int beats) const;

    AnalysisPicture::Content content_;
    VisibleRange visible_;
    std::optional<double> downbeat_;
    std::optional<double> playhead_;
    std::optional<double> hover_;  // seconds
    QImage picture_;               // null: to be drawn again
};

}  // namespace brindlehum
