// OutputsSettings: the list of output profiles and the editor of the selected one.
#pragma once

#include <QWidget>
#include <optional>

#include "mix/engine/audio_devices.h"
#include "settings/settings_store.h"

class QListWidget;
class QStackedLayout;
class QToolButton;

namespace brindlehum {

class ProfileEditor;
class SpeakerTest;

class OutputsSettings : public QWidget {
    Q_OBJECT
public:
    OutputsSettings(SettingsStore& settings, const AudioDevices& devices, SpeakerTest& test);
    const std::optional<UUID>& selectedID() const { return selectedID_; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* makeList();
    void refresh();
    void refreshList();
    void listDevices();
    void select(std::optional<UUID> id);
    void add();
    void remove();

    SettingsStore& settings_;
    const AudioDevices& devices_;
    std::optional<UUID> selectedID_;
    QListWidget* list_;
    QToolButton* minus_;
    QStackedLayout* stack_;
    QWidget* none_;
    QWidget* form_;
    ProfileEditor* editor_;
    std::shared_ptr<void> watching_;
};

}  // namespace brindlehum
