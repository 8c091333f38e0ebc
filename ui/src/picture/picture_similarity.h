// PictureSimilarity: the similarity of a piece's bars as a square matrix, with axes, colour scale and the loop.
#pragma once

#include <QRectF>

#include "picture/picture_canvas.h"

namespace brindlehum::PictureSimilarity {

// Fills `place` with the largest square that fits. Returns the right edge of what was drawn.
double draw(const PictureCanvas& canvas, const MusicAnalysis& analysis, const QRectF& place);

}  // namespace brindlehum::PictureSimilarity
