// PlayerView: the audition surface over PlayerModel.
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
    PlayerView(PlayerModel& player, WaveformView::Style style, QWidget* parent = nullptr);
    WaveformView& waveform() { return *waveform_; }
    // Puts a widget at the end of the message's row, which then shows with either of them.
    void addToMessage(QWidget* widget);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

    // The controls give way, so that the window can be narrow.
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
