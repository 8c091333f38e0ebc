// WavePanel: the waveform with its time ruler and its scroll bar.
#pragma once

#include <QWidget>

#include "ui/player/waveform_view.h"

class QScrollBar;

namespace brindlehum {

class DragSession;
class LoadedSound;
class TimeRuler;
class Transport;

class WavePanel : public QWidget {
    Q_OBJECT
public:
    WavePanel(LoadedSound& sound, Transport& transport, DragSession& drags, WaveformView::Style style,
              QWidget* parent = nullptr);
    WaveformView& waveform() { return *waveform_; }
    void refresh();       // after a change of the player
    void movePlayhead();  // after a move of the playhead

private:
    QScrollBar* makeScrollBar();
    void connectWaveform();
    void viewChanged();
    double sampleRate() const;

    LoadedSound& sound_;
    Transport& transport_;
    TimeRuler* ruler_;
    WaveformView* waveform_;
    QScrollBar* scroll_;
};

}  // namespace brindlehum
