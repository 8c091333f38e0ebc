// Draws the similarity matrix of an analysis picture.
#include "picture/picture_similarity.h"

#include <QImage>
#include <algorithm>
#include <cmath>

namespace brindlehum::PictureSimilarity {
namespace {

constexpr double axis = 30;  // bar numbers at the left and below
constexpr double scaleGap = 16;
constexpr double scaleWidth = 14;
constexpr double scaleLabels = 40;

struct Range {
    double low = 0;
    double high = 1;
    double share(double value) const { return high > low ? (value - low) / (high - low) : 1; }
};

// Bars of music are rather alike, so the scale starts above the least alike 2 % of them. Silent bars would stretch it
// over values that no music takes.
Range rangeOf(const SimilarityMatrix& matrix, const BarProfile& profile) {
    std::vector<double> values;
    const int end = std::min(profile.musicEndBar, matrix.size);
    for (int i = profile.musicStartBar; i < end; ++i) {
        for (int j = profile.musicStartBar; j < i; ++j) { values.push_back(matrix.at(i, j)); }
    }
    if (values.empty()) { return {}; }
    const auto low = values.begin() + ptrdiff_t(values.size() / 50);
    std::nth_element(values.begin(), low, values.end());
    return {std::floor(*low * 20) / 20, 1};
}

// The first cell of each pixel, and one past the last of all; a pixel has at least one cell.
std::vector<int> cells(int pixels, int size) {
    std::vector<int> edges;
    for (int p = 0; p <= pixels; ++p) { edges.push_back(int(int64_t(p) * size / pixels)); }
    return edges;
}

QImage imageOf(const PictureCanvas& canvas, const SimilarityMatrix& matrix, const Range& range, int pixels) {
    QImage image(pixels, pixels, QImage::Format_RGB32);
    const std::vector<int> edges = cells(pixels, matrix.size);
    for (int y = 0; y < pixels; ++y) {
        const auto top = size_t(y);
        for (int x = 0; x < pixels; ++x) {
            const auto left = size_t(x);
            double sum = 0;
            int count = 0;
            for (int i = edges[top]; i < std::max(edges[top + 1], edges[top] + 1); ++i) {
                for (int j = edges[left]; j < std::max(edges[left + 1], edges[left] + 1); ++j, ++count) {
                    sum += matrix.at(i, j);
                }
            }
            image.setPixelColor(x, y, canvas.ramp(range.share(sum / count)));
        }
    }
    return image;
}

class Square {
public:
    Square(const PictureCanvas& canvas, const QRectF& place, int bars) : canvas_(canvas), place_(place), bars_(bars) {}

    double at(int boundary) const { return place_.width() * boundary / bars_; }

    void axes() const {
        const TextStyle style = canvas_.small();
        const double least = std::max(PictureCanvas::width(QString::number(bars_), style) + 8, 18.0);
        const int step = thinning(place_.width() / bars_, least);
        for (int bar = 0; bar < bars_; bar += step) {
            const QString number = QString::number(bar + 1);
            const double middle = (at(bar) + at(bar + 1)) / 2;
            canvas_.hairline({place_.left() + middle, place_.bottom()}, {place_.left() + middle, place_.bottom() + 4},
                             canvas_.theme.secondary);
            canvas_.hairline({place_.left() - 4, place_.top() + middle}, {place_.left(), place_.top() + middle},
                             canvas_.theme.secondary);
            canvas_.text({place_.left() + middle - 30, place_.bottom() + 5, 60, 14}, Qt::AlignCenter, number, style);
            canvas_.text({place_.left() - axis - 4, place_.top() + middle - 7, axis - 2, 14},
                         Qt::AlignRight | Qt::AlignVCenter, number, style);
        }
    }

    void pins(const std::vector<PinMark>& marks) const {
        canvas_.painter.setPen(Qt::NoPen);
        for (const PinMark& mark : marks) {
            const double x = place_.left() + at(mark.boundary);
            canvas_.painter.setBrush(mark.color);
            canvas_.painter.drawPolygon(
                QPolygonF({{x - 4, place_.top() - 8}, {x + 4, place_.top() - 8}, {x, place_.top() - 1}}));
        }
    }

    void frame(int from, int to, Qt::PenStyle line) const {
        if (from < 0 || to <= from || to > bars_) { return; }
        const QColor ground = canvas_.theme.dark ? QColor("#101216") : QColor("#ffffff");
        const QRectF box(place_.left() + at(from), place_.top() + at(from), at(to) - at(from), at(to) - at(from));
        canvas_.painter.setBrush(Qt::NoBrush);
        canvas_.painter.setPen(QPen(ground, 4));
        canvas_.painter.drawRect(box);
        canvas_.painter.setPen(QPen(pinColor(PinColor::loop, canvas_.theme), 2, line));
        canvas_.painter.drawRect(box);
    }

private:
    const PictureCanvas& canvas_;
    QRectF place_;
    int bars_;
};

void scale(const PictureCanvas& canvas, const QRectF& place, const Range& range) {
    QLinearGradient gradient(place.bottomLeft(), place.topLeft());
    for (int stop = 0; stop <= 16; ++stop) { gradient.setColorAt(stop / 16.0, canvas.ramp(stop / 16.0)); }
    canvas.painter.setPen(QPen(canvas.theme.border, 1));
    canvas.painter.setBrush(gradient);
    canvas.painter.drawRect(place);
    for (int mark = 0; mark <= 4; ++mark) {
        const double y = place.bottom() - place.height() * mark / 4;
        const QString figure = QString::number(range.low + (range.high - range.low) * mark / 4, 'f', 2);
        const QString value = mark == 0 && range.low > 0 ? QString::fromUtf8("\u2264 ") + figure : figure;
        canvas.text({place.right() + 5, y - 7, scaleLabels, 14}, Qt::AlignLeft | Qt::AlignVCenter, value,
                    canvas.small());
    }
}

// Draws a sample of a line and its meaning; returns where the text ends.
double key(const PictureCanvas& canvas, const QPointF& at, Qt::PenStyle line, const QString& text) {
    canvas.painter.setPen(QPen(pinColor(PinColor::loop, canvas.theme), 2, line));
    canvas.painter.drawLine(at + QPointF(0, 8), at + QPointF(24, 8));
    const double width = PictureCanvas::width(text, canvas.small()) + 2;
    canvas.text({at.x() + 30, at.y(), width, 16}, Qt::AlignLeft | Qt::AlignVCenter, text, canvas.small());
    return at.x() + 30 + width;
}

}  // namespace

double draw(const PictureCanvas& canvas, const MusicAnalysis& analysis, const QRectF& place) {
    const StructureResult& structure = analysis.structure;
    const SimilarityMatrix& matrix = structure.similarity;
    canvas.heading(place.topLeft(), QStringLiteral("Bar similarity"));
    const double top = place.top() + 30;
    const double side =
        std::floor(std::min(place.bottom() - top - 22, place.width() - axis - 4 - scaleGap - scaleWidth - scaleLabels));
    const QRectF square(place.left() + axis + 4, top, side, side);
    const double right = square.right() + scaleGap + scaleWidth + scaleLabels;
    if (matrix.size < 1 || side < 8) { return right; }

    const Range range = rangeOf(matrix, structure.profile);
    const double device = canvas.painter.transform().m11();
    canvas.painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    canvas.painter.drawImage(square, imageOf(canvas, matrix, range, std::max(1, int(side * device))));
    const Square plot(canvas, square, matrix.size);
    const Pins& pins = structure.pins;
    plot.frame(pins.loopStart, pins.loopEnd, Qt::SolidLine);
    double keyX = key(canvas, {place.left() + 150, place.top()}, Qt::SolidLine, QStringLiteral("loop"));
    if (!structure.loopCandidates.empty() && structure.loopCandidates[0].boundary != pins.loopEnd) {
        plot.frame(pins.loopStart, structure.loopCandidates[0].boundary, Qt::DashLine);
        key(canvas, {keyX + 16, place.top()}, Qt::DashLine, QStringLiteral("best rated loop end"));
    }
    plot.axes();
    plot.pins(pinMarks(analysis, canvas.theme));
    scale(canvas, {square.right() + scaleGap, top, scaleWidth, side}, range);
    return right;
}

}  // namespace brindlehum::PictureSimilarity
