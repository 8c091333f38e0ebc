// Lays out the page of an analysis.
#include "ui/picture/analysis_picture.h"

#include <QPainter>
#include <algorithm>

#include "picture/picture_canvas.h"
#include "picture/picture_readings.h"
#include "picture/picture_similarity.h"
#include "picture/picture_timeline.h"

namespace brindlehum::AnalysisPicture {
namespace {

constexpr double margin = 40;

double scaleOf(QSize size) {
    return std::min(double(size.width()) / pageSize.width(), double(size.height()) / pageSize.height());
}

double header(const PictureCanvas& canvas, const Content& content, double width) {
    const TextStyle facts{13, canvas.theme.secondary};
    const double factsWidth = PictureCanvas::width(content.facts, facts) + 2;
    const double right = margin + width;
    canvas.text({right - factsWidth, 34, factsWidth, 30}, Qt::AlignRight | Qt::AlignVCenter, content.facts, facts);
    canvas.text({margin, 28, width - factsWidth - 24, 38}, Qt::AlignLeft | Qt::AlignVCenter, content.name,
                {27, canvas.theme.text, true});
    const QString line = content.analysis ? QString::fromStdString(content.analysis->summary()) : content.remark;
    canvas.text({margin, 68, width, 24}, Qt::AlignLeft | Qt::AlignVCenter, line,
                {16, content.analysis ? canvas.theme.secondary : canvas.theme.warning});
    return 108;
}

void page(const PictureCanvas& canvas, const Content& content, const QSizeF& size) {
    const double width = size.width() - 2 * margin;
    const double bottom = size.height() - margin + 8;
    const PictureTimeline timeline(canvas, content, {0, content.seconds()}, margin, width);
    double y = header(canvas, content, width);
    if (!content.analysis) {
        timeline.ruler(timeline.waveform(y, bottom - y - 24));
        timeline.viewGain(y);
        return;
    }
    PictureReadings::cards(canvas, *content.analysis, {margin, y, width, 74});
    y = timeline.flags(y + 94);
    const double flagFoot = y;
    y = timeline.sections(y);
    y = timeline.bars(y);
    const double waveTop = y;
    y = timeline.waveform(y, size.height() * 0.175);
    timeline.pinLines(flagFoot, y);
    timeline.viewGain(waveTop);
    const double noveltyHeight = size.height() * 0.06;
    y = timeline.novelty(timeline.ruler(y) + 8, noveltyHeight);
    timeline.pinLines(y - noveltyHeight, y);

    const double top = y + 26;
    const double right = PictureSimilarity::draw(canvas, *content.analysis, {margin, top, width * 0.46, bottom - top});
    const double column = (margin + width - right - 96) / 2;
    PictureReadings::form(canvas, *content.analysis, {right + 40, top, column * 0.85, bottom - top});
    const double left = right + 40 + column * 0.85 + 40;
    PictureReadings::candidates(canvas, *content.analysis, {left, top, margin + width - left, bottom - top});
}

}  // namespace

QImage draw(const Content& content, const Theme& theme, QSize size) {
    QImage image(size, QImage::Format_RGB32);
    if (image.isNull()) { return image; }
    image.fill(theme.window);
    const double scale = scaleOf(size);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.scale(scale, scale);
    page(PictureCanvas(painter, theme), content, QSizeF(size) / scale);
    return image;
}

QImage drawBars(const Content& content, const Theme& theme, const Part& part, QSize pixels, double scale) {
    constexpr double axisHeight = 24;
    QImage image(pixels, QImage::Format_RGB32);
    if (image.isNull()) { return image; }
    image.fill(theme.window);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.scale(scale, scale);
    const QSizeF size = QSizeF(pixels) / scale;
    const PictureCanvas canvas(painter, theme);
    const PictureTimeline timeline(canvas, content, part, 0, size.width());
    const double top = content.analysis ? timeline.bars(0) : 0;
    timeline.ruler(timeline.waveform(top, size.height() - top - axisHeight));
    timeline.viewGain(top);
    return image;
}

double xAt(double seconds, double duration, QSize size) {
    const double inset = margin * scaleOf(size);
    return inset + (duration > 0 ? seconds / duration : 0) * (size.width() - 2 * inset);
}

}  // namespace brindlehum::AnalysisPicture
