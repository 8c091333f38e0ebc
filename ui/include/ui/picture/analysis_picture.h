// AnalysisPicture: a piece of music and its analysis on one page.
#pragma once

#include <QImage>
#include <QSize>
#include <QString>
#include <optional>

#include "analysis/piece/music_analysis.h"
#include "ui/look/theme.h"

namespace brindlehum::AnalysisPicture {

struct Content {
    QString name;   // the file's, elided where it is too long
    QString facts;  // what is known of the file, for the corner of the page
    SignalView mono;
    double monoRate = 0;                      // Hz
    const MusicAnalysis* analysis = nullptr;  // none: the waveform alone
    QString remark;                           // says why there is no analysis
    std::optional<float> peak;                // of `mono`, where it is known without a look at all samples
    double seconds() const {
        if (analysis) { return analysis->seconds; }
        return monoRate > 0 ? double(mono.size()) / monoRate : 0;
    }
};

// The page is laid out for this size and scaled to others; with other proportions, the plots take what is left.
inline constexpr QSize pageSize(1600, 1200);

// Needs a QGuiApplication, for the fonts. Returns a null image if it can't be allocated.
QImage draw(const Content& content, const Theme& theme, QSize size = pageSize);

// A part of a piece, for a view that shows its bars closely.
struct Part {
    double first = 0;    // seconds at the left edge
    double seconds = 0;  // from edge to edge
};
// Bar numbers, beats, waveform and time axis of a part. `pixels` are those of a screen with `scale` to a logical one.
// Null if it can't be allocated.
QImage drawBars(const Content& content, const Theme& theme, const Part& part, QSize pixels, double scale);

// The column of a time on the image, in its pixels.
double xAt(double seconds, double duration, QSize size);

}  // namespace brindlehum::AnalysisPicture
