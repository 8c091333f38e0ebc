// EditorLanes: paints the lanes of a document, as waves or down to single samples.
#pragma once

#include <QPainter>
#include <QPixmap>
#include <string>
#include <vector>

#include "ui/editor/lane_picture.h"
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
    };
    void paint(QPainter& painter, const QRectF& area, double dpr, const Shown& shown, const WaveformColors& colors);
    // Columns of waves that the last paint has drawn anew; device pixels.
    int drawn() const { return waves_.drawn(); }

private:
    void paintSamples(QPainter& painter, const QRectF& area, double dpr, const Shown& shown,
                      const WaveformColors& colors);

    LanePicture waves_;
    QPixmap samples_;
    uint64_t samplesRevision_ = 0;
    VisibleRange samplesVisible_;
    QColor samplesColor_;
};

}  // namespace brindlehum
