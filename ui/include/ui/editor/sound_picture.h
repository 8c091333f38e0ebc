// SoundPicture: the visible part of a document as minima and maxima, one bucket a pixel.
#pragma once

#include "audio/wave/waveform.h"
#include "dsp/sound.h"
#include "mix/player/visible_range.h"

namespace brindlehum {

// At most 16 lanes. `columns` are device pixels.
WaveformData soundPicture(const Sound& sound, const VisibleRange& visible, int columns);

}  // namespace brindlehum
