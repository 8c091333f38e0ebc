// TimeLabel: the position of the playhead and the length of the file.
#pragma once

#include <QLabel>

namespace brindlehum {

// "0:01.250 / 0:12.000" in digits of equal width, so that nothing moves while it runs.
class TimeLabel : public QLabel {
    Q_OBJECT
public:
    explicit TimeLabel(QWidget* parent = nullptr);
    // A rate below 1 Hz counts as 1.
    void setTime(double frame, int64_t frames, double sampleRate);
};

}  // namespace brindlehum
