// The rows of the monitor's window: level, fold-down, trims and upmix.
#pragma once

#include <QWidget>
#include <vector>

#include "mix/player/upmix_numbers.h"
#include "monitor/engine/monitor_engine.h"
#include "settings/settings_store.h"

class QLabel;
class QPushButton;
class QSpinBox;
class QToolButton;

namespace brindlehum {

class MenuButton;
class NumberField;
class ReferenceButton;
class ValueSlider;

// Volume, in dB and, with a reference, in dB SPL; dim and mute.
class MonitorLevel : public QWidget {
    Q_OBJECT
public:
    explicit MonitorLevel(MonitorEngine& monitor, QWidget* parent = nullptr);
    void refresh();

private:
    MonitorEngine& monitor_;
    NumberField* volume_;
    QLabel* spl_;
    ValueSlider* slider_;
    ReferenceButton* reference_;
    QToolButton* dim_;
    NumberField* dimBy_;
    QToolButton* mute_;
};

// The fold-down, as a row of buttons of which one is down, and checks that hold as long as their button.
class MonitorListen : public QWidget {
    Q_OBJECT
public:
    explicit MonitorListen(MonitorEngine& monitor, QWidget* parent = nullptr);
    void refresh();

protected:
    void hideEvent(QHideEvent* event) override;

private:
    MonitorEngine& monitor_;
    void addCheck(const QString& text, const QString& help, MonitorCheck check);

    std::vector<QToolButton*> modes_;
    std::vector<std::pair<MonitorCheck, QToolButton*>> checks_;
    QLabel* checking_;
    QToolButton* fold_;
};

// Trim of the heights, and for experts where the bus begins.
class MonitorTrim : public QWidget {
    Q_OBJECT
public:
    MonitorTrim(MonitorEngine& monitor, SettingsStore& settings, QWidget* parent = nullptr);
    void refresh();

private:
    MonitorEngine& monitor_;
    SettingsStore& settings_;
    ValueSlider* heights_;
    NumberField* heightsBy_;
    QWidget* offset_;
    QSpinBox* input_;
};

// The upmix's numbers of the monitor.
class MonitorUpmixNumbers : public UpmixNumbers {
public:
    explicit MonitorUpmixNumbers(MonitorEngine& monitor) : monitor_(monitor) {}
    const UpmixParams& now() const override { return monitor_.state().upmix.params; }
    UpmixParams start() const override { return params(monitor_.state().upmix.preset); }
    bool isStereo() const override { return monitor_.state().source == MonitorSource::stereo; }
    void edit(const UpmixParams& params) override;

private:
    MonitorEngine& monitor_;
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
