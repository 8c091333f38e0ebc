// Paints what a drag carries.
#include "ui/player/export_picture.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <algorithm>

#include "ui/look/theme.h"

namespace brindlehum {
namespace {

// A picture larger than this hides what lies under the pointer; all in logical pixels.
constexpr QSizeF maxPicture(320, 120);
constexpr double padding = 6;
constexpr double opacity = 0.85;

}  // namespace

FileDrag::Picture exportPicture(const QPixmap& wave, const QPoint& at, const QString& form) {
    const Theme& theme = Theme::current();
    const QFont font = QGuiApplication::font();
    const QFontMetricsF metrics(font);
    const QSizeF full = wave.deviceIndependentSize();
    const double shrink = std::min(
        {1.0, maxPicture.width() / std::max(full.width(), 1.0), maxPicture.height() / std::max(full.height(), 1.0)});
    const QSizeF shown = full * shrink;
    const QSizeF caption(metrics.horizontalAdvance(form) + 2 * padding, metrics.height() + padding);
    const QSizeF all(std::max(shown.width(), caption.width()), shown.height() + caption.height());

    const double dpr = wave.devicePixelRatio();
    QPixmap picture((all * dpr).toSize());
    picture.setDevicePixelRatio(dpr);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setOpacity(opacity);
    painter.drawPixmap(QRectF(QPointF(), shown), wave, QRectF(wave.rect()));
    const QRectF strip(0, shown.height(), all.width(), caption.height());
    painter.fillRect(strip, theme.accentGround);
    painter.setFont(font);
    painter.setPen(theme.text);
    painter.drawText(strip, Qt::AlignCenter, form);
    return {picture, (QPointF(at) * shrink).toPoint()};
}

}  // namespace brindlehum
