// SpeakerMap: the room from above, in which each speaker is a button that solos or mutes it.
#pragma once

#include <QAbstractButton>
#include <vector>

#include "monitor/engine/monitor_engine.h"
#include "monitor/engine/monitor_meter.h"

namespace brindlehum {

// Where a speaker stands in the plan, as a part of the ring's radius from the listener: x to the right, y to the back.
// Heights stand on an inner ring, the LFE behind the listener.
QPointF planPlace(SpeakerID speaker, const SpeakerList& in);

// A click solos; with Alt, the right button or the key M it mutes: some window managers take the Alt-click.
class SpeakerTile : public QAbstractButton {
    Q_OBJECT
public:
    SpeakerTile(MonitorEngine& monitor, MonitorMeter& meter, size_t index, QWidget* parent);
    QSize sizeHint() const override;
    SpeakerID speaker() const { return channel().speaker; }
    // Reads the state and says it to screen readers. `isReached`: the mode sends something to it.
    void refresh(bool isReached);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    enum class Look : uint8_t { soloed, silenced, unreached, heard };
    Look look() const;
    const MonitorMeter::Channel& channel() const { return meter_.speakers()[index_]; }
    void toggle(std::set<SpeakerID> MonitorState::*set);

    MonitorEngine& monitor_;
    MonitorMeter& meter_;
    const size_t index_;
    bool isReached_ = true;
};

class SpeakerMap : public QWidget {
    Q_OBJECT
public:
    SpeakerMap(MonitorEngine& monitor, MonitorMeter& meter, QWidget* parent = nullptr);
    QSize sizeHint() const override { return {420, 260}; }
    QSize minimumSizeHint() const override { return {300, 220}; }
    const std::vector<SpeakerTile*>& tiles() const { return tiles_; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void refresh();
    void findUnreached();
    void place();
    // Half the ring's height, and half its width: tiles that would cover each other move apart.
    double radius() const;
    double wideRadius() const;

    MonitorEngine& monitor_;
    MonitorMeter& meter_;
    SpeakerList shown_;
    MonitorState read_;  // as last asked which speakers are reached
    OutputProfile readProfile_;
    std::set<SpeakerID> unreached_;
    std::vector<SpeakerTile*> tiles_;
};

}  // namespace brindlehum
