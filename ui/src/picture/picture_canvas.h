// PictureCanvas: drawing shared by the parts of an analysis picture: text in pixels, marks of pins, colours of values.
#pragma once

#include <QPainter>
#include <QString>
#include <vector>

#include "analysis/piece/music_analysis.h"
#include "ui/look/theme.h"

namespace brindlehum {

struct TextStyle {
    double pixels = 12;
    QColor color;
    bool bold = false;
};

class PictureCanvas {
public:
    PictureCanvas(QPainter& target, const Theme& colors) : painter(target), theme(colors) {}

    QPainter& painter;
    const Theme& theme;

    TextStyle small() const { return {11, theme.secondary}; }
    TextStyle body() const { return {13, theme.text}; }
    // Elided in the middle where it doesn't fit.
    void text(const QRectF& place, int flags, const QString& text, const TextStyle& style) const;
    static double width(const QString& text, const TextStyle& style);
    // A line in capitals over a plot or a list.
    void heading(const QPointF& corner, const QString& text) const;
    // An upright or level line, one device pixel wide and sharp.
    void hairline(QPointF from, QPointF to, const QColor& color) const;
    // A colour for 0 to 1, from the ground of the plots to the strongest contrast with it.
    QColor ramp(double value) const;

private:
    static QFont font(const TextStyle& style);
};

// A pin as it is shown; it has the same colour everywhere.
struct PinMark {
    QString name;
    int boundary = 0;
    double seconds = 0;
    QColor color;
};
// In the order of the piece. The start of the music is marked only if the piece begins with silence.
std::vector<PinMark> pinMarks(const MusicAnalysis& analysis, const Theme& theme);

enum class PinColor { start, introEnd, loop, endingStart, musicEnd, finalHit };
QColor pinColor(PinColor pin, const Theme& theme);

// "1:02.5".
QString clockText(double seconds);

// The smallest of 1, 2, 4, ... such that every so-manieth of marks `spacing` apart is at least `least` from the next.
int thinning(double spacing, double least);

}  // namespace brindlehum
