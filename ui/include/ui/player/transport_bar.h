// TransportBar: play, loop, auto-play and the level.
#pragma once

#include <QWidget>

#include "mix/player/player_model.h"

class QLabel;
class QToolButton;

namespace brindlehum {

class ValueSlider;

class TransportBar : public QWidget {
    Q_OBJECT
public:
    TransportBar(PlayerModel& player, SettingsStore& settings, QWidget* parent = nullptr);
    void refresh();  // after a change of the player or the settings
    // Shortens the slider and hides its value.
    void setNarrow(bool narrow);

private:
    void makeToggles();
    void makeLevel();

    PlayerModel& player_;
    SettingsStore& settings_;
    QToolButton* play_;
    QToolButton* loop_;
    QToolButton* autoPlay_;
    ValueSlider* level_;
    QLabel* levelValue_;
};

}  // namespace brindlehum
