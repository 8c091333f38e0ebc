// InsertPanel: the controls of one insert, made from what the effect says of them.
#pragma once

#include <QPointer>
#include <QWidget>
#include <functional>
#include <vector>

#include "monitor/engine/monitor_engine.h"

class QFormLayout;
class QLabel;
class QPushButton;

namespace brindlehum {

class EffectFrame;

// A window. It shows the window that comes with the effect, where there is one and the desktop allows it, or rows of
// our own; its user may choose. A double click on a slider, or Delete, returns its control to rest.
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
    void showOwn(bool own);
    bool isOwnShown() const;
    void fit();
    QString problem() const;

    MonitorEngine& monitor_;
    const UUID id_;
    QFormLayout* form_;
    QPushButton* switch_;
    QWidget* rows_;
    QPointer<EffectFrame> frame_;  // while the effect's own window is shown
    QLabel* problem_;
    std::vector<std::function<void()>> follow_;  // each shows its control's value
};

}  // namespace brindlehum
