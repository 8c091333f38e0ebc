// PlayerHeader: one line with the file's name, its format, the selection's length and the times.
#pragma once

#include <QWidget>

#include "mix/player/player_model.h"

class QLabel;

namespace brindlehum {

class ElidedLabel;
class TimeLabel;

class PlayerHeader : public QWidget {
    Q_OBJECT
public:
    explicit PlayerHeader(PlayerModel& player, QWidget* parent = nullptr);
    void refresh();      // after a change of the player
    void refreshTime();  // after a move of the playhead

private:
    QWidget* makeSelection();

    PlayerModel& player_;
    ElidedLabel* title_;
    QWidget* selectionBox_;
    QLabel* selection_;
    TimeLabel* time_;
    ElidedLabel* summary_;
};

}  // namespace brindlehum
