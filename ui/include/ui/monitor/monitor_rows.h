// The rows of the monitor's window: level, fold-down, trims and upmix.
#pragma once

#include <QWidget>
#include <vector>

#include "monitor/engine/monitor_engine.h"
#include "settings/settings_store.h"

class QLabel;
class QPushButton;
class QSpinBox;
class QToolButton;

namespace brindlehum {

class MenuButton;
class ValueSlider;

// Volume, dim and mute.
class MonitorLevel : public QWidget {
    Q_OBJECT
public:
    explicit MonitorLevel(MonitorEngine& monitor, QWidget* parent = nullptr);
    void refresh();

private:
    MonitorEngine& monitor_;
    QLabel* readout_;
    ValueSlider* slider_;
    QToolButton* dim_;
    QToolButton* mute_;
};

// The fold-down, as a row of buttons of which one is down.
class MonitorListen : public QWidget {
    Q_OBJECT
public:
    explicit MonitorListen(MonitorEngine& monitor, QWidget* parent = nullptr);
    void refresh();

private:
    MonitorEngine& monitor_;
    std::vector<QToolButton*> modes_;
    QToolButton* fold_;
};

// Trim of the heights, the way out of solos and mutes, and for experts where the bus begins.
class MonitorTrim : public QWidget {
    Q_OBJECT
public:
    MonitorTrim(MonitorEngine& monitor, SettingsStore& settings, QWidget* parent = nullptr);
    void refresh();

private:
    MonitorEngine& monitor_;
    SettingsStore& settings_;
    ValueSlider* heights_;
    QLabel* readout_;
    QPushButton* clear_;
    QWidget* offset_;
    QSpinBox* input_;
};

class MonitorUpmix : public QWidget {
    Q_OBJECT
public:
    explicit MonitorUpmix(MonitorEngine& monitor, QWidget* parent = nullptr);
    void refresh();

private:
    MonitorEngine& monitor_;
    QToolButton* on_;
    MenuButton* preset_;
    QPushButton* reset_;
};

}  // namespace brindlehum
