// LanePicture: the waves of a document's lanes as pixels, of which a scroll keeps those that stay in sight.
#pragma once

#include <QImage>

#include "dsp/sound.h"
#include "mix/player/visible_range.h"

namespace brindlehum {

inline constexpr int mostLanes = 16;  // that an editor shows

class LanePicture {
public:
    struct Wanted {
        const Sound& sound;
        uint64_t revision = 0;  // another one for another sound
        VisibleRange visible;
        QSize size;  // device pixels
        QColor color;
    };
    // Draws what has changed since the last call. The waves stand within half a pixel of their place, and a column may
    // show half of its neighbours as well. Transparent between them.
    const QImage& draw(const Wanted& wanted);
    // Columns that the last call has drawn.
    int drawn() const { return drawn_; }

private:
    void drawColumns(const Sound& sound, int from, int to);
    // Moves the columns that stay in sight; returns those to draw, from first to last.
    std::pair<int, int> scroll(int columns);

    QImage image_;
    QRgb color_ = 0;
    uint64_t revision_ = 0;
    VisibleRange visible_;  // of the image
    int drawn_ = 0;
};

}  // namespace brindlehum
