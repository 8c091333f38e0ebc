// PictureReadings: the words and figures of an analysis picture.
#pragma once

#include <QRectF>

#include "picture/picture_canvas.h"

namespace brindlehum::PictureReadings {

// A row of cards: tempo, meter, grid, key, loudness, peak and form.
void cards(const PictureCanvas& canvas, const MusicAnalysis& analysis, const QRectF& place);
// Pins, character and notes.
void form(const PictureCanvas& canvas, const MusicAnalysis& analysis, const QRectF& place);
// The best places to end a loop and to leave the piece.
void candidates(const PictureCanvas& canvas, const MusicAnalysis& analysis, const QRectF& place);

}  // namespace brindlehum::PictureReadings
