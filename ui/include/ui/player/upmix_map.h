// UpmixMap: the room from above, with what the upmix gives each speaker.
#pragma once

#include <QWidget>

namespace brindlehum {

class UpmixLevels;

// A disc for the direct sound over a wider one for the ambience; heights stand inside the ring. Measures only while it
// is visible.
class UpmixMap : public QWidget {
    Q_OBJECT
public:
    explicit UpmixMap(UpmixLevels& levels, QWidget* parent = nullptr);
    QSize sizeHint() const override { return {260, 280}; }
    QSize minimumSizeHint() const override { return {150, 170}; }
    // "Ls: direct silent, ambience -24.0 dB" for the speaker at this place.
    QString textAt(QPointF place) const;
    QPointF placeOf(size_t speaker) const;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QRectF room() const;
    void paintRoom(QPainter& painter) const;
    void paintSpeaker(QPainter& painter, size_t speaker) const;
    void paintLegend(QPainter& painter) const;

    UpmixLevels& levels_;
};

}  // namespace brindlehum
