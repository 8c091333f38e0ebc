// Paints the plan of the room, and changes solo and mute.
#include "ui/monitor/speaker_map.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <numbers>

#include "monitor/state/monitor_matrix.h"
#include "ui/look/theme.h"

namespace brindlehum {
namespace {

// Logical pixels.
constexpr QSize tileSize(46, 30);
constexpr double corner = 6;
constexpr int edge = 24;
constexpr double levelHeight = 3;
constexpr double textPoints = 9;

constexpr double lowElevation = 20;  // degrees; speakers above are heights
constexpr double heightRing = 0.55;  // of the ring's radius
constexpr double lfeDistance = 0.3;
constexpr double mostWidening = 1.8;  // of the plan, beside its height

const QColor soloGround(240, 200, 60);

bool isMuteKey(const QKeyEvent& event) {
    return event.key() == Qt::Key_M && event.modifiers() == Qt::NoModifier;
}

}  // namespace

QPointF planPlace(SpeakerID speaker, const SpeakerList& in) {
    if (speaker == SpeakerID::LFE) { return {0, lfeDistance}; }
    const Direction at = direction(speaker, in);
    const double azimuth = at.az * std::numbers::pi / 180;  // counted to the left
    return QPointF(-std::sin(azimuth), -std::cos(azimuth)) * (at.el > lowElevation ? heightRing : 1.0);
}

SpeakerTile::SpeakerTile(MonitorEngine& monitor, MonitorMeter& meter, size_t index, QWidget* parent)
    : QAbstractButton(parent), monitor_(monitor), meter_(meter), index_(index) {
    setObjectName(QString::fromUtf8(rawValue(speaker()).data()));
    setText(QString::fromStdString(channel().label));
    setToolTip(tr("Click to solo. Alt-click, right-click or M to mute."));
    setFocusPolicy(Qt::StrongFocus);
    QFont small = font();
    small.setPointSizeF(textPoints);
    small.setWeight(QFont::DemiBold);
    setFont(small);
    resize(tileSize);
    connect(this, &QAbstractButton::clicked, this, [this] { toggle(&MonitorState::solo); });
    refresh(true);
}

QSize SpeakerTile::sizeHint() const {
    return tileSize;
}

SpeakerTile::Look SpeakerTile::look() const {
    const MonitorState& state = monitor_.state();
    if (state.solo.contains(speaker())) { return Look::soloed; }
    if (state.muted.contains(speaker()) || !state.solo.empty()) { return Look::silenced; }
    return isReached_ ? Look::heard : Look::unreached;
}

void SpeakerTile::toggle(std::set<SpeakerID> MonitorState::*set) {
    MonitorState next = monitor_.state();
    if ((next.*set).erase(speaker()) == 0) { (next.*set).insert(speaker()); }
    monitor_.setState(next);
}

void SpeakerTile::refresh(bool isReached) {
    isReached_ = isReached;
    const MonitorState& state = monitor_.state();
    QString said = text();
    if (state.solo.contains(speaker())) { said += tr(", solo"); }
    if (state.muted.contains(speaker())) { said += tr(", muted"); }
    if (!isReached) { said += tr(", nothing in this mode"); }
    if (said != accessibleName()) { setAccessibleName(said); }  // each call is told to screen readers
    update();
}

void SpeakerTile::mousePressEvent(QMouseEvent* event) {
    const bool mutes = event->button() == Qt::RightButton || (event->modifiers() & Qt::AltModifier) != 0;
    if (!mutes) { return QAbstractButton::mousePressEvent(event); }
    setFocus(Qt::MouseFocusReason);
    toggle(&MonitorState::muted);
}

// The window's own M is for all speakers.
bool SpeakerTile::event(QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride && isMuteKey(*static_cast<QKeyEvent*>(event))) { event->accept(); }
    return QAbstractButton::event(event);
}

void SpeakerTile::keyPressEvent(QKeyEvent* event) {
    if (!isMuteKey(*event)) { return QAbstractButton::keyPressEvent(event); }
    toggle(&MonitorState::muted);
}

void SpeakerTile::paintEvent(QPaintEvent* /*event*/) {
    const Theme& theme = Theme::current();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF body = QRectF(rect()).adjusted(1, 1, -1, -1);
    const Look now = look();
    const Qt::PenStyle line = isReached_ ? Qt::SolidLine : Qt::DotLine;
    painter.setPen(QPen(hasFocus() ? theme.accent : theme.outline, hasFocus() ? 2 : 1, line));
    painter.setBrush(now == Look::soloed ? soloGround : now == Look::heard ? theme.accentGround : theme.panel);
    painter.drawRoundedRect(body, corner, corner);
    painter.setPen(now == Look::soloed ? QColor(Qt::black) : now == Look::heard ? theme.text : theme.secondary);
    QFont font = this->font();
    font.setStrikeOut(monitor_.state().muted.contains(speaker()));
    painter.setFont(font);
    painter.drawText(body.adjusted(0, 0, 0, -levelHeight), Qt::AlignCenter, text());
    const MeterLevel& level = channel().level;
    const double share = 1 - std::clamp(level.level / MeterLevel::floor, 0.0, 1.0);
    if (share <= 0) { return; }
    painter.setPen(Qt::NoPen);
    painter.setBrush(level.isOver ? theme.over : now == Look::soloed ? QColor(Qt::black) : theme.accent);
    const QRectF lane = body.adjusted(5, body.height() - levelHeight - 4, -5, -4);
    painter.drawRect(QRectF(lane.topLeft(), QSizeF(share * lane.width(), levelHeight)));
}

SpeakerMap::SpeakerMap(MonitorEngine& monitor, MonitorMeter& meter, QWidget* parent)
    : QWidget(parent), monitor_(monitor), meter_(meter) {
    setAccessibleName(tr("Speakers of the room"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    connect(&meter, &MonitorMeter::changed, this, &SpeakerMap::refresh);
    refresh();
}

void SpeakerMap::findUnreached() {
    MonitorState now = monitor_.state();
    now.volumeDB = 0;  // what makes no difference
    if (now == read_ && monitor_.profile() == readProfile_) { return; }
    read_ = std::move(now);
    readProfile_ = monitor_.profile();
    unreached_ = MonitorMatrix::unreached(read_, readProfile_);
}

void SpeakerMap::refresh() {
    findUnreached();
    SpeakerList now;
    for (const auto& channel : meter_.speakers()) { now.push_back(channel.speaker); }
    if (now == shown_) {
        for (SpeakerTile* tile : tiles_) { tile->refresh(!unreached_.contains(tile->speaker())); }
        return;
    }
    shown_ = std::move(now);
    for (SpeakerTile* tile : std::exchange(tiles_, {})) { tile->deleteLater(); }
    for (size_t i = 0; i < shown_.size(); ++i) {
        tiles_.push_back(new SpeakerTile(monitor_, meter_, i, this));
        tiles_.back()->refresh(!unreached_.contains(shown_[i]));
        tiles_.back()->show();
    }
    place();
    update();
}

double SpeakerMap::radius() const {
    return std::max(std::min(width(), height()) / 2.0 - edge, 1.0);
}

double SpeakerMap::wideRadius() const {
    return std::min(std::max(width() / 2.0 - tileSize.width(), radius()), mostWidening * radius());
}

void SpeakerMap::place() {
    const double r = radius();
    const double wide = wideRadius();
    for (size_t i = 0; i < tiles_.size(); ++i) {
        const QPointF at = planPlace(shown_[i], shown_);
        const QPointF middle(width() / 2.0 + wide * at.x(), height() / 2.0 + r * at.y());
        tiles_[i]->move((middle - QPointF(tileSize.width(), tileSize.height()) / 2).toPoint());
    }
}

void SpeakerMap::resizeEvent(QResizeEvent* /*event*/) {
    place();
}

void SpeakerMap::paintEvent(QPaintEvent* /*event*/) {
    const Theme& theme = Theme::current();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF middle(width() / 2.0, height() / 2.0);
    const double r = radius();
    const double wide = wideRadius();
    painter.setPen(QPen(theme.border, 1));
    painter.drawEllipse(middle, wide, r);
    painter.setPen(QPen(theme.border, 1, Qt::DotLine));
    painter.drawEllipse(middle, heightRing * wide, heightRing * r);
    painter.setPen(QPen(theme.secondary, 1.5));
    painter.drawEllipse(middle, 6, 6);
    painter.drawLine(middle - QPointF(0, 6), middle - QPointF(0, 10));  // the nose
}

}  // namespace brindlehum
