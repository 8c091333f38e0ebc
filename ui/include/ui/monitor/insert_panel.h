// InsertPanel: the controls of one insert, made from what the effect says of them.
#pragma once

#include <QWidget>
#include <functional>
#include <vector>

#include "monitor/engine/monitor_engine.h"

class QFormLayout;
class QLabel;

namespace brindlehum {

// A window. A double click on a slider, or Delete, returns its control to rest.
class InsertPanel : public QWidget {
    Q_OBJECT
public:
    InsertPanel(MonitorEngine& monitor, const UUID& id, QWidget* parent = nullptr);

    // A number with its unit as it stands beside a slider: "-3.5 dB", "440 Hz", "12".
    static QString readout(const PluginControl& control, double value);

private:
    void makeControls();
    QWidget* slider(const PluginControl& control);
    QWidget* choice(const PluginControl& control);
    QWidget* toggle(const PluginControl& control);
    QWidget* file(const PluginFile& file);
    void chooseFile(const PluginFile& file);
    double valueOf(const PluginControl& control) const;
    void set(const PluginControl& control, double value);
    void refresh();

    MonitorEngine& monitor_;
    const UUID id_;
    QFormLayout* form_;
    QLabel* problem_;
    std::vector<std::function<void()>> follow_;  // each shows its control's value
};

}  // namespace brindlehum
