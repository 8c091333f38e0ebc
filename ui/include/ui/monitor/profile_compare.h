// ProfileCompare: another profile at equal level, and the button that goes to it and back.
#pragma once

#include <QWidget>

#include "monitor/engine/monitor_engine.h"
#include "settings/settings_store.h"

class QLabel;
class QPushButton;

namespace brindlehum {

class MenuButton;

class ProfileCompare : public QWidget {
    Q_OBJECT
public:
    ProfileCompare(MonitorEngine& monitor, SettingsStore& settings, QWidget* parent = nullptr);
    void refresh();

private:
    void fill(QMenu& menu);

    MonitorEngine& monitor_;
    SettingsStore& settings_;
    MenuButton* other_;
    QPushButton* switch_;
    QLabel* match_;
};

}  // namespace brindlehum
