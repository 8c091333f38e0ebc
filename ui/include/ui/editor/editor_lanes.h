// EditorLanes: paints the lanes of a document: as waves, down to single samples, or as spectrograms.
#pragma once

#include <QPainter>
#include <QPixmap>
#include <string>
#include <vector>

#include "ui/editor/lane_picture.h"
#include "ui/editor/spectrum_lanes.h"
#include "ui/look/theme.h"

namespace brindlehum {

// What moves over the lanes is the caller's: they are painted anew only where the sound, the view or the size changes.
class EditorLanes {
public:
    struct Shown {
        const Sound& sound;
        uint64_t revision = 0;  // another one for another sound
        VisibleRange visible;
        std::vector<std::string> labels;
        double sampleRate = 0;  // Hz
    };
    enum class Style { waves, logSpectrum, linearSpectrum };
    explicit EditorLanes(MainLoop& loop) : spectrum_(loop) {}
    Style style = Style::waves;
    bool isSpectrum() const { return style != Style::waves; }
    SpectrumLanes& spectrum() { return spectrum_; }
    void paint(QPainter& painter, const QRectF& area, double dpr, const Shown& shown, const WaveformColors& colors);
    // Columns of waves that the last paint has drawn anew; device pixels.
    int drawn() const { return waves_.drawn(); }

private:
    void paintSpectrum(QPainter& painter, const QRectF& area, double dpr, const Shown& shown);
    void paintSamples(QPainter& painter, const QRectF& area, double dpr, const Shown& shown,
                      const WaveformColors& colors);

    LanePicture waves_;
    SpectrumLanes spectrum_;
    QPixmap samples_;
    uint64_t samplesRevision_ = 0;
    VisibleRange samplesVisible_;
    QColor samplesColor_;
};

}  // namespace brindlehum
