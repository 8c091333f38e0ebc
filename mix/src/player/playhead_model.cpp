// PlayheadModel: announces each new position once.
#include "mix/player/playhead_model.h"

namespace brindlehum {

void PlayheadModel::setFrame(double frame) {
    if (frame == frame_) { return; }
    frame_ = frame;
    Q_EMIT frameChanged(frame);
}

}  // namespace brindlehum
