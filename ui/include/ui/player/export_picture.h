// What follows the pointer while a sound is dragged out.
#pragma once

#include <QPixmap>
#include <QString>

#include "ui/look/file_drag.h"

namespace brindlehum {

// The waveform `wave`, made small and pale, with the form's name below. `at` is the pointer's place in `wave`, in
// logical pixels.
FileDrag::Picture exportPicture(const QPixmap& wave, const QPoint& at, const QString& form);

}  // namespace brindlehum
