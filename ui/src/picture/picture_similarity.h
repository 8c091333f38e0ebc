// PictureSimilarity: how alike the bars of a piece are, as a square with its axes, its scale and the loop.
#pragma once

#include <QRectF>

#include "picture/picture_canvas.h"

namespace brindlehum::PictureSimilarity {

// Fills `place`; the square is as large as it allows. Gives the right edge of all that was drawn.
double draw(const PictureCanvas& canvas, const MusicAnalysis& analysis, const QRectF& place);

}  // namespace brindlehum::PictureSimilarity
