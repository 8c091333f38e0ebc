// Paints the stars and turns mouse and keys into ratings.
#include "ui/inspector/star_row.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "ui/look/icons.h"
#include "ui/look/theme.h"

namespace brindlehum {
namespace {

// Logical pixels.
constexpr int starSize = 18;
constexpr int pitch = 24;
constexpr int margin = 4;

}  // namespace

StarRow::StarRow(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setFixedSize(sizeHint());
    setAccessibleName(tr("Rating: none"));
    setToolTip(tr("A click on the star of the rating takes it away"));
}

QSize StarRow::sizeHint() const {
    return {2 * margin + (stars - 1) * pitch + starSize, 2 * margin + starSize};
}

QRect StarRow::starRect(int star) const {
    return {margin + (star - 1) * pitch, margin, starSize, starSize};
}

int StarRow::starAt(const QPoint& point) const {
    const int star = (point.x() - margin + (pitch - starSize) / 2) / pitch + 1;
    return rect().contains(point) && star >= 1 && star <= stars ? star : 0;
}

void StarRow::setRating(int rating) {
    if (rating == rating_) { return; }
    rating_ = rating;
    setAccessibleName(rating > 0 ? tr("Rating: %1 of %2").arg(rating).arg(stars) : tr("Rating: none"));
    update();
}

void StarRow::hover(int star) {
    if (star == hovered_) { return; }
    hovered_ = star;
    update();
}

void StarRow::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int star = 1; star <= stars; ++star) {
        const bool filled = star <= rating_;
        const auto role = filled ? SymbolRole::star : star <= hovered_ ? SymbolRole::control : SymbolRole::secondary;
        symbol(filled ? "star-fill" : "star", role).paint(&painter, starRect(star));
    }
    if (!hasFocus()) { return; }
    painter.setPen(QPen(Theme::current().accent, 2));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 6, 6);
}

void StarRow::mousePressEvent(QMouseEvent* event) {
    const int star = event->button() == Qt::LeftButton ? starAt(event->pos()) : 0;
    if (star > 0) { Q_EMIT starClicked(star); }
}

void StarRow::mouseMoveEvent(QMouseEvent* event) {
    hover(starAt(event->pos()));
}

void StarRow::leaveEvent(QEvent* /*event*/) {
    hover(0);
}

void StarRow::keyPressEvent(QKeyEvent* event) {
    const int key = event->key();
    int wanted = rating_;
    if (key == Qt::Key_Left) {
        wanted = std::max(0, rating_ - 1);
    } else if (key == Qt::Key_Right) {
        wanted = std::min(stars, rating_ + 1);
    } else if (key >= Qt::Key_0 && key <= Qt::Key_5) {
        wanted = key - Qt::Key_0;
    } else {
        return QWidget::keyPressEvent(event);
    }
    // The star that equals the rating clears it.
    if (wanted != rating_) { Q_EMIT starClicked(wanted == 0 ? rating_ : wanted); }
}

}  // namespace brindlehum
