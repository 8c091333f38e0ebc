// SpectrumLanes: paints the lanes of a document as spectrograms, from tiles that are computed in the background.
#pragma once

#include <QImage>
#include <QObject>
#include <QPainter>
#include <map>
#include <vector>

#include "mix/player/visible_range.h"
#include "platform/background.h"
#include "ui/editor/spectrum_tile.h"

namespace brindlehum {

// Main thread. Tiles that are in sight and missing are asked for by each paint; what a newer paint doesn't need any
// more is given up. Tiles stay while there is room and while the samples under them stay the same.
class SpectrumLanes : public QObject {
    Q_OBJECT
public:
    struct Shown {
        const Sound& sound;
        uint64_t revision = 0;  // another one for another sound
        VisibleRange visible;
        SpectrumAxis axis;
        bool isDark = true;
    };
    explicit SpectrumLanes(MainLoop& loop, QObject* parent = nullptr);
    void paint(QPainter& painter, const QRectF& area, double dpr, const Shown& shown);
    // Lets go of all tiles, and of the samples under them.
    void clear();
    // Tiles that the last paint lacked and that are being made.
    size_t missing() const { return requested_.size(); }
    size_t held() const { return tiles_.size(); }
    const QImage& image() const { return image_; }
    Background& queue() { return queue_; }  // tests drain it

Q_SIGNALS:
    void changed();  // more tiles are there

private:
    using Place = SpectrumTile::Place;
    // The tile if it fits, marked as used; else null, and the place is noted as missing.
    const SpectrumTile* tile(const Shown& shown, const Place& place, std::vector<Place>& missing);
    void compose(const Shown& shown);
    void composeLane(const Shown& shown, int channel, int top, int bottom, std::vector<Place>& missing);
    void request(const Shown& shown, std::vector<Place> missing);
    void keep(SpectrumTile tile);

    std::map<Place, SpectrumTile> tiles_;
    uint64_t uses_ = 0;
    size_t bytes_ = 0;
    std::vector<Place> requested_;
    uint64_t requestedRevision_ = 0;
    QImage image_;
    bool isStale_ = true;
    uint64_t revision_ = 0;  // of the image, as are the next
    VisibleRange visible_;
    SpectrumAxis axis_;
    bool isDark_ = true;
    Background::Line requests_;
    Background queue_;  // last member, so that its work ends first
};

}  // namespace brindlehum
