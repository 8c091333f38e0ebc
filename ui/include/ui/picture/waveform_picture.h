// WaveformPicture: measures and paints the lanes of an overview.
#pragma once

#include <QPainter>
#include <QString>
#include <cstdint>
#include <string>
#include <vector>

#include "audio/wave/waveform.h"
#include "ui/look/theme.h"

namespace brindlehum::WaveformPicture {

// A quiet file is enlarged, by at most 30 dB.
inline constexpr double maxViewGain = 31.6;

// Largest absolute value over all lanes of what is loaded so far.
float peak(const WaveformData& data);
double viewGain(float peak);
// "view +12 dB" once the gain is more than 1 dB, else empty.
QString gainText(double gain);

// Buckets [first, last) under column `column` of `columns`; empty where nothing is loaded yet.
struct Buckets {
    int first = 0;
    int last = 0;
};
Buckets bucketsUnder(int column, int columns, const WaveformData& data, int64_t totalFrames);

// The group of speakers that a lane belongs to, by its label.
enum class LaneGroup { front, lfe, surround, height, other };
LaneGroup laneGroup(const std::string& label);
// The height of the lowest lane that still shows its label, in logical pixels.
inline constexpr double minLabelLane = 9;

// Left edge of the playhead, which is `playheadWidth` logical pixels wide.
inline constexpr double playheadWidth = 1.5;
double playheadX(double frame, int64_t totalFrames, double width);
// The left edge and the width of a span of frames, in logical pixels.
struct Span {
    double x = 0;
    double width = 0;
};
Span span(int64_t lower, int64_t upper, int64_t totalFrames, double width);

// Paints lanes, separators, lane labels, bands in the colours of the lanes' groups and the gain label into `size` logical pixels at device pixel ratio `dpr`;
// `data` may be null. The background and the selection are the caller's.
void paintLanes(QPainter& painter, const QSizeF& size, double dpr, const WaveformData* data, int64_t totalFrames,
                const std::vector<std::string>& labels, const WaveformColors& colors);

}  // namespace brindlehum::WaveformPicture
