// PlayerView: the audition player's surface: header, waveform, message and controls.
#pragma once

#include <QWidget>

#include "mix/player/player_model.h"
#include "ui/player/waveform_view.h"

class QHBoxLayout;
class QLabel;
class QStackedLayout;

namespace brindlehum {

class ElidedLabel;
class PlayerHeader;
class SoundfieldRow;
class SourceBar;
class SymbolLabel;
class TimeRuler;
class TransportBar;

class PlayerView : public QWidget {
    Q_OBJECT
public:
    PlayerView(PlayerModel& player, SettingsStore& settings, WaveformView::Style style, QWidget* parent = nullptr);
    WaveformView& waveform() { return *waveform_; }
    // Adds a widget at the end of the message's row; the row is shown while either has something to show.
    void addToMessage(QWidget* widget);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

    // Smaller than the controls' own minimum: they shrink to icons.
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QWidget* makeEmpty();
    QWidget* makeLoaded(WaveformView::Style style);
    QWidget* makeMessage();
    QWidget* makeControls();
    void fitControls();
    void connectWaveform();
    void refresh();
    void refreshMessage();
    void refreshWaveform();
    void movePlayhead();

    PlayerModel& player_;
    SettingsStore& settings_;
    QStackedLayout* stack_;
    QWidget* empty_;
    QWidget* loaded_;
    PlayerHeader* header_;
    TimeRuler* ruler_;
    WaveformView* waveform_;
    QWidget* controls_;
    TransportBar* transport_;
    SourceBar* source_;
    SoundfieldRow* soundfield_;
    QWidget* messageRow_;
    QHBoxLayout* messageLayout_;
    SymbolLabel* warning_;
    ElidedLabel* message_;
    QWidget* messageExtra_ = nullptr;
};

}  // namespace brindlehum
