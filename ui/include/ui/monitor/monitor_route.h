// MonitorRoute: which source is heard in which order on which profile, and the button that starts it.
#pragma once

#include <QWidget>

#include "monitor/engine/monitor_engine.h"
#include "settings/settings_store.h"

class QPushButton;

namespace brindlehum {

class MenuButton;

class MonitorRoute : public QWidget {
    Q_OBJECT
public:
    MonitorRoute(MonitorEngine& monitor, SettingsStore& settings, QWidget* parent = nullptr);
    void refresh();
    // Asks again what can be listened to.
    void refreshInputs();

private:
    QString sourceText() const;

    MonitorEngine& monitor_;
    SettingsStore& settings_;
    std::vector<AudioInputDevice> inputs_;
    MenuButton* source_;
    MenuButton* bus_;
    MenuButton* output_;
    QPushButton* start_;
};

}  // namespace brindlehum
