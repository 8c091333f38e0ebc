// PlayerView: the audition player's surface: header, waveform, message and controls.
#pragma once

#include <QWidget>
#include <memory>
#include <vector>

#include "mix/player/player_model.h"
#include "ui/player/wave_panel.h"

class QHBoxLayout;
class QLabel;
class QStackedLayout;

namespace brindlehum {

class DragSession;
class ElidedLabel;
class ExportCopy;
class PlayerHeader;
class SoundfieldRow;
class SourceBar;
class SymbolLabel;
class TransportBar;
class UpmixPanel;

class PlayerView : public QWidget {
    Q_OBJECT
public:
    PlayerView(PlayerModel& player, SettingsStore& settings, WaveformView::Style style, QWidget* parent = nullptr);
    WaveformView& waveform() { return wave_->waveform(); }
    DragSession& drags() { return *drags_; }
    ExportCopy& exportCopy() { return *copy_; }
    ~PlayerView() override;
    // Adds a widget at the end of the message's row; the row is shown while either has something to show.
    void addToMessage(QWidget* widget);
    // Opens the window with the numbers of the upmix.
    void showUpmixPanel();

Q_SIGNALS:
    void editorAsked();      // for the loaded sound
    void upmixPanelAsked();  // on a panel, which has no room for that window

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    // What changes while the view is hidden costs nothing until it is seen.
    void showEvent(QShowEvent* event) override;

    // Smaller than the controls' own minimum: they shrink to icons.
    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void connectDrags();
    QWidget* makeEmpty();
    QWidget* makeLoaded();
    QWidget* makeMessage();
    QWidget* makeControls();
    void fitControls();
    void changed();
    void refresh();
    void refreshMessage();
    void movePlayhead();

    PlayerModel& player_;
    SettingsStore& settings_;
    const WaveformView::Style style_;
    bool stale_ = false;  // since it was hidden
    std::unique_ptr<DragSession> drags_;
    ExportCopy* copy_;
    QStackedLayout* stack_;
    QWidget* empty_;
    QWidget* loaded_;
    PlayerHeader* header_;
    WavePanel* wave_;
    QWidget* controls_;
    TransportBar* transport_;
    SourceBar* source_;
    SoundfieldRow* soundfield_;
    UpmixPanel* upmixPanel_ = nullptr;  // made when first opened
    QWidget* messageRow_;
    QHBoxLayout* messageLayout_;
    SymbolLabel* warning_;
    ElidedLabel* message_;
    std::vector<QWidget*> messageExtras_;
};

}  // namespace brindlehum
