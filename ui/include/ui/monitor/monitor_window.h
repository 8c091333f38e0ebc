// MonitorWindow: source, level, fold-down, speakers and upmix of the live monitor.
#pragma once

#include <QWidget>

#include "monitor/engine/monitor_engine.h"
#include "monitor/engine/monitor_meter.h"
#include "settings/settings_store.h"
#include "ui/monitor/monitor_rows.h"

class QLabel;
class QPushButton;
class QToolButton;

namespace brindlehum {

class MonitorRoute;
class ProfileCompare;
class SpeakerPane;
class UpmixSliders;

// Every control writes one field of the monitor's state. Keys: D dims, M mutes, R goes to the reference, X to the other
// output, 1 to 5 choose the fold-down, + and - the volume, Return starts and stops.
class MonitorWindow : public QWidget {
    Q_OBJECT
public:
    MonitorWindow(MonitorEngine& monitor, SettingsStore& settings, MainLoop& loop);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void addKeys();
    void refresh();
    void showFigures();
    QString whySilent() const;

    MonitorEngine& monitor_;
    SettingsStore& settings_;
    MonitorMeter meter_;
    MonitorUpmixNumbers numbers_{monitor_};
    UpmixSliders* sliders_;
    QWidget* sliderPane_;
    MonitorRoute* route_;
    MonitorLevel* level_;
    MonitorListen* listen_;
    SpeakerPane* speakers_;
    MonitorTrim* trim_;
    MonitorUpmix* upmix_;
    ProfileCompare* compare_;
    QLabel* message_;
    QLabel* format_;
};

}  // namespace brindlehum
