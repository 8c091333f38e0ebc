// Paints the room, its speakers and their levels.
#include "ui/player/upmix_map.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>
#include <cmath>
#include <numbers>

#include "mix/player/upmix_levels.h"
#include "ui/look/theme.h"

namespace brindlehum {
namespace {

// Logical pixels.
constexpr double legendHeight = 24;
constexpr double edge = 22;  // from the ring of speakers to the widget's edge
constexpr double mark = 3;   // radius of a speaker that gets nothing
constexpr double directRadius = 12;
constexpr double ambienceRadius = 19;
constexpr double labelPoints = 8;
constexpr double near = 16;  // how far from a speaker the pointer still means it
constexpr int ambienceAlpha = 110;

constexpr double lowElevation = 20;   // degrees; speakers above are heights
constexpr double heightRing = 0.55;   // of the ring's radius
constexpr double lfeDistance = 0.35;  // in front of the listener

double shareOf(double db) {
    return 1 - std::clamp(db / MeterLevel::floor, 0.0, 1.0);
}

QString dbText(double db) {
    return db <= MeterLevel::floor ? UpmixMap::tr("silent") : QString::asprintf("%.1f dB", db);
}

}  // namespace

UpmixMap::UpmixMap(UpmixLevels& levels, QWidget* parent) : QWidget(parent), levels_(levels) {
    setObjectName("upmixMap");
    setAccessibleName(tr("Picture of the upmix"));
    setAccessibleDescription(tr("The room from above, with the levels of direct sound and ambience in each speaker"));
    QFont small = font();
    small.setPointSizeF(labelPoints);
    setFont(small);
    connect(&levels, &UpmixLevels::changed, this, qOverload<>(&QWidget::update));
}

void UpmixMap::showEvent(QShowEvent* /*event*/) {
    levels_.show(true);
}

void UpmixMap::hideEvent(QHideEvent* /*event*/) {
    levels_.show(false);
}

// The square around the ring of speakers.
QRectF UpmixMap::room() const {
    const double side = std::max(std::min<double>(width(), height() - legendHeight) - 2 * edge, 1.0);
    const QPointF middle(width() / 2.0, (height() - legendHeight) / 2);
    return {middle - QPointF(side, side) / 2, QSizeF(side, side)};
}

QPointF UpmixMap::placeOf(size_t speaker) const {
    const auto& [id, label, at, direct, ambience] = levels_.speakers()[speaker];
    const double radius = room().width() / 2;
    if (id == SpeakerID::LFE) { return room().center() - QPointF(0, lfeDistance * radius); }
    const double azimuth = at.az * std::numbers::pi / 180;  // counted to the left
    const double distance = at.el > lowElevation ? heightRing * radius : radius;
    return room().center() - QPointF(std::sin(azimuth), std::cos(azimuth)) * distance;
}

void UpmixMap::paintRoom(QPainter& painter) const {
    const Theme& theme = Theme::of(*this);
    const QRectF ring = room();
    const double inset = (1 - heightRing) * ring.width() / 2;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(theme.border, 1));
    painter.drawEllipse(ring);
    painter.setPen(QPen(theme.border, 1, Qt::DotLine));
    painter.drawEllipse(ring.adjusted(inset, inset, -inset, -inset));
    painter.setPen(QPen(theme.secondary, 1.5));
    const QPointF head = ring.center();
    painter.drawEllipse(head, 5, 5);
    painter.drawLine(head - QPointF(0, 5), head - QPointF(0, 9));  // the nose
}

void UpmixMap::paintSpeaker(QPainter& painter, size_t speaker) const {
    const Theme& theme = Theme::of(*this);
    const auto& [id, label, at, direct, ambience] = levels_.speakers()[speaker];
    const QPointF place = placeOf(speaker);
    const auto disc = [&](const MeterLevel& level, double most, QColor color) {
        if (level.level <= MeterLevel::floor) { return; }
        const double radius = mark + shareOf(level.level) * (most - mark);
        painter.setBrush(color);
        painter.drawEllipse(place, radius, radius);
    };
    painter.setPen(Qt::NoPen);
    QColor soft = theme.waveform.surround;
    soft.setAlpha(ambienceAlpha);
    disc(ambience, ambienceRadius, soft);
    disc(direct, directRadius, theme.accent);
    painter.setPen(QPen(theme.secondary, 1));
    painter.setBrush(theme.panel);
    painter.drawEllipse(place, mark, mark);
    painter.setPen(theme.text);
    const QRectF below(place + QPointF(-30, 8), QSizeF(60, painter.fontMetrics().height()));
    painter.drawText(below, Qt::AlignHCenter | Qt::AlignTop, QString::fromStdString(label));
}

void UpmixMap::paintLegend(QPainter& painter) const {
    const Theme& theme = Theme::of(*this);
    const double y = height() - legendHeight / 2;
    double x = std::max((width() - 150) / 2.0, 4.0);
    for (const auto& [name, color, alpha] :
         {std::tuple(tr("Direct"), theme.accent, 255), {tr("Ambience"), theme.waveform.surround, ambienceAlpha}}) {
        QColor shown = color;
        shown.setAlpha(alpha);
        painter.setPen(Qt::NoPen);
        painter.setBrush(shown);
        painter.drawEllipse(QPointF(x + 5, y), 5, 5);
        painter.setPen(theme.secondary);
        painter.drawText(QRectF(x + 14, y - 10, 80, 20), Qt::AlignLeft | Qt::AlignVCenter, name);
        x += 14 + painter.fontMetrics().horizontalAdvance(name) + 16;
    }
}

void UpmixMap::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintRoom(painter);
    for (size_t i = 0; i < levels_.speakers().size(); ++i) { paintSpeaker(painter, i); }
    paintLegend(painter);
}

QString UpmixMap::textAt(QPointF place) const {
    QString text = tr("What each speaker gets of the direct sound and of the ambience");
    double nearest = near;
    for (size_t i = 0; i < levels_.speakers().size(); ++i) {
        const QPointF away = placeOf(i) - place;
        const double distance = std::hypot(away.x(), away.y());
        if (distance >= nearest) { continue; }
        nearest = distance;
        const auto& [id, label, at, direct, ambience] = levels_.speakers()[i];
        text = tr("%1: direct %2, ambience %3")
                   .arg(QString::fromStdString(label), dbText(direct.level), dbText(ambience.level));
    }
    return text;
}

bool UpmixMap::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) { return QWidget::event(event); }
    const auto* help = static_cast<QHelpEvent*>(event);
    QToolTip::showText(help->globalPos(), textAt(help->pos()), this);
    return true;
}

}  // namespace brindlehum
