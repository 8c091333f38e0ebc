// WaveformPicture: measures and paints the lanes of an overview.
#pragma once

#include <QPainter>
#include <QString>
#include <cstdint>
#include <string>
#include <vector>

#include "audio/wave/waveform.h"
#include "mix/player/visible_range.h"
#include "ui/look/theme.h"

namespace brindlehum::WaveformPicture {

// Half height of a lane's drawing at full scale, of the lane's height.
inline constexpr double laneFill = 0.46;
// A quiet file is enlarged, by at most 30 dB.
inline constexpr double maxViewGain = 31.6;

// Largest absolute value over all lanes of what is loaded so far.
float peak(const WaveformData& data);
double viewGain(float peak);
// "view +12 dB" once the gain is more than 1 dB, else empty.
QString gainText(double gain);

// Buckets [first, last) that hold the frames [from, to); empty where nothing is loaded yet.
struct Buckets {
    int first = 0;
    int last = 0;
};
Buckets bucketsUnder(double from, double to, const WaveformData& data);

// The group of speakers that a lane belongs to, by its label.
enum class LaneGroup { front, lfe, surround, height, other };
LaneGroup laneGroup(const std::string& label);
// The height of the lowest lane that still shows its label, in logical pixels.
inline constexpr double minLabelLane = 9;

// Left edge of the playhead, which is `playheadWidth` logical pixels wide.
inline constexpr double playheadWidth = 1.5;
double playheadX(double frame, const VisibleRange& visible, double width);
// The left edge and the width of a span of frames, in logical pixels; may lie outside the picture.
struct Span {
    double x = 0;
    double width = 0;
};
Span span(const FrameRange& range, const VisibleRange& visible, double width);

// What the lanes show. A frame fills the pixels from its own position to that of the next one.
struct Lanes {
    const WaveformData* overview = nullptr;  // may be null
    const WaveformData* detail = nullptr;    // finer than the overview, for a part of the sound; may be null
    VisibleRange visible;
    const std::vector<std::string>& labels;
};
// What stands over the waves of `lanes` lanes: their labels, and the bands in the colours of their groups.
void paintLaneMarks(QPainter& painter, const QSizeF& size, size_t lanes, const std::vector<std::string>& labels,
                    const WaveformColors& colors);
// Paints lanes, separators, the marks and the gain label into `size` logical pixels at device pixel ratio `dpr`. The
// background and the selection are the caller's.
void paintLanes(QPainter& painter, const QSizeF& size, double dpr, const Lanes& lanes, const WaveformColors& colors);

}  // namespace brindlehum::WaveformPicture
