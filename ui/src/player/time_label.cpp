// Writes the position and the length.
#include "ui/player/time_label.h"

#include <algorithm>

#include "base/time_text.h"
#include "ui/look/tabular_font.h"

namespace brindlehum {

TimeLabel::TimeLabel(QWidget* parent) : QLabel(parent) {
    setFont(tabularFont(13));
    setAccessibleName(tr("Time"));
    setTextInteractionFlags(Qt::NoTextInteraction);
}

void TimeLabel::setTime(double frame, int64_t frames, double sampleRate) {
    const double rate = std::max(sampleRate, 1.0);
    const std::string text = timeText(frame / rate) + " / " + timeText(double(frames) / rate);
    setText(QString::fromStdString(text));
}

}  // namespace brindlehum
