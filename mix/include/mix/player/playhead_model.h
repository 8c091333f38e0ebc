// PlayheadModel: the playhead in an object of its own, so that its 30 updates a second redraw nothing else.
#pragma once

#include <QObject>
#include <cstdint>

namespace brindlehum {

// Main thread.
class PlayheadModel : public QObject {
    Q_OBJECT
public:
    double frame() const { return frame_; }
    int64_t wholeFrame() const { return int64_t(frame_); }
    void setFrame(double frame);

Q_SIGNALS:
    void frameChanged(double frame);

private:
    double frame_ = 0;  // source frames
};

}  // namespace brindlehum
