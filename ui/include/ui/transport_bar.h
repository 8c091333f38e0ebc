// TransportBar: play, loop, auto-play, the times, the selection and the level.
#pragma once

#include <QWidget>

#include "mix/player_model.h"

class QLabel;
class QToolButton;

namespace brindlehum {

class TimeLabel;
class ValueSlider;

class TransportBar : public QWidget {
    Q_OBJECT
public:
    explicit TransportBar(PlayerModel& player, QWidget* parent = nullptr);
    void refresh();      // after a change of the player or the settings
    void refreshTime();  // after a move of the playhead

private:
    void makeToggles();
    void makeSelection();
    void makeLevel();

    PlayerModel& player_;
    QToolButton* play_;
    QToolButton* loop_;
    QToolButton* autoPlay_;
    TimeLabel* time_;
    QWidget* selectionBox_;
    QLabel* selection_;
    ValueSlider* level_;
    QLabel* levelValue_;
};

}  // namespace brindlehum
