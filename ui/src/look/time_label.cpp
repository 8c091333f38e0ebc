#include "ui/look/time_label.h"

#include <QFontDatabase>
#include <algorithm>

#include "mix/player/player_model.h"

namespace brindlehum {

QFont tabularFont(double pointSize) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(pointSize);
    return font;
}

TimeLabel::TimeLabel(QWidget* parent) : QLabel(parent) {
    setFont(tabularFont(13));
    setAccessibleName("Time");
    setTextInteractionFlags(Qt::NoTextInteraction);
}

void TimeLabel::setTime(double frame, int64_t frames, double sampleRate) {
    const double rate = std::max(sampleRate, 1.0);
    const std::string text = PlayerModel::time(frame / rate) + " / " + PlayerModel::time(double(frames) / rate);
    setText(QString::fromStdString(text));
}

}  // namespace brindlehum
