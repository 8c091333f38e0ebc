// BarRuler: paints the editor's ruler: bars with their numbers, or time, and the flags of the pins.
#pragma once

#include <QPainter>
#include <optional>
#include <vector>

#include "editor/music/music_model.h"
#include "mix/player/visible_range.h"

namespace brindlehum::BarRuler {

struct Bars {
    VisibleRange visible;
    const std::vector<double>& boundaries;  // seconds
    const std::vector<double>& beats;       // seconds
    double sampleRate = 0;                  // Hz
    bool isUncertain = false;               // of an older state, or of little confidence: drawn weakly
};
// Numbers and bar lines in `ruler`, and faint lines of bars and beats down to `bottom`, as dense as there is room.
void paintBars(QPainter& painter, const QRectF& ruler, double bottom, const Bars& bars);
void paintTime(QPainter& painter, const QRectF& ruler, const VisibleRange& visible, double sampleRate);
// The pinned loop, at the foot of the ruler.
void paintLoop(QPainter& painter, double from, double to);
// "INTRO", "LOOP" or "ENDING" on a flag whose pole reaches down to `bottom`; its flag is on the left of the pole where
// the one of the `next` pin would cover it.
void paintPin(QPainter& painter, PinKind kind, double x, double bottom, std::optional<double> next);
// Where the pin stands and why: "Loop ends at bar 17: 16 bars, phrase".
QString reasonOf(PinKind kind, const MusicModel& music);

}  // namespace brindlehum::BarRuler
