// TransportBar: play, loop, auto-play and the level.
#pragma once

#include <QWidget>

class QLabel;
class QToolButton;

namespace brindlehum {

class ListeningSetup;
class LoadedSound;
class SettingsStore;
class Transport;
class ValueSlider;

class TransportBar : public QWidget {
    Q_OBJECT
public:
    TransportBar(LoadedSound& sound, Transport& transport, ListeningSetup& listening, SettingsStore& settings,
                 QWidget* parent = nullptr);
    void refresh();  // after a change of the player or the settings
    // Shortens the slider and hides its value.
    void setNarrow(bool narrow);

private:
    void makeToggles();
    void makeLevel();

    LoadedSound& sound_;
    Transport& transport_;
    ListeningSetup& listening_;
    SettingsStore& settings_;
    QToolButton* play_;
    QToolButton* loop_;
    QToolButton* autoPlay_;
    ValueSlider* level_;
    QLabel* levelValue_;
};

}  // namespace brindlehum
