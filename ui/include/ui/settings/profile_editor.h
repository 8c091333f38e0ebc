// ProfileEditor: the form of one output profile.
#pragma once

#include <QWidget>
#include <functional>
#include <vector>

#include "platform/audio_system.h"
#include "settings/settings_store.h"

class QComboBox;
class QFormLayout;
class QGridLayout;
class QLineEdit;

namespace brindlehum {

class TrimStepper;

class ProfileEditor : public QWidget {
    Q_OBJECT
public:
    explicit ProfileEditor(SettingsStore& settings);
    void setDevices(std::vector<AudioOutputDevice> devices, int defaultChannels);
    // Shows a profile of the settings; the user's changes go into the profile with its id.
    void showProfile(const OutputProfile& profile);

private:
    struct SpeakerRow {
        QComboBox* output;
        TrimStepper* trim;
    };
    void makeForm();
    QWidget* makeGrid();
    void fillDevices();
    void rebuildGrid();
    void refresh();
    void refreshChannels(QComboBox& picker, int current) const;
    QComboBox* channelPicker(const QString& name, std::function<void(OutputProfile&, int)> edit);
    void edit(const std::function<void(OutputProfile&)>& change);

    SettingsStore& settings_;
    OutputProfile profile_;
    std::vector<AudioOutputDevice> devices_;
    int defaultChannels_ = 0;
    QFormLayout* form_;
    QLineEdit* name_;
    QComboBox* kind_;
    QComboBox* device_;
    QComboBox* left_;
    QComboBox* right_;
    QComboBox* layout_;
    QWidget* speakerPart_;
    QGridLayout* grid_ = nullptr;
    QWidget* gridBox_ = nullptr;
    std::vector<SpeakerRow> rows_;
    std::vector<SpeakerID> gridSpeakers_;  // what the rows stand for
};

}  // namespace brindlehum
