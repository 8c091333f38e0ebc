// PlayerHeader: one line with the file's name, its format, the selection's length and the times.
#pragma once

#include <QWidget>

class QLabel;

namespace brindlehum {

class ElidedLabel;
class LoadedSound;
class TimeLabel;
class Transport;

class PlayerHeader : public QWidget {
    Q_OBJECT
public:
    PlayerHeader(LoadedSound& sound, Transport& transport, QWidget* parent = nullptr);
    void refresh();      // after a change of the player
    void refreshTime();  // after a move of the playhead

private:
    QWidget* makeSelection();

    LoadedSound& sound_;
    Transport& transport_;
    ElidedLabel* title_;
    QWidget* selectionBox_;
    QLabel* selection_;
    TimeLabel* time_;
    ElidedLabel* summary_;
};

}  // namespace brindlehum
