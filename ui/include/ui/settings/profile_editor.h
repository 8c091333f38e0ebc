// ProfileEditor: the form of one output profile.
#pragma once

#include <QWidget>
#include <functional>
#include <optional>
#include <vector>

#include "platform/audio_system.h"
#include "settings/settings_store.h"

class QComboBox;
class QFormLayout;
class QGridLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QToolButton;

namespace brindlehum {

class SpeakerTest;
class TrimStepper;

class ProfileEditor : public QWidget {
    Q_OBJECT
public:
    ProfileEditor(SettingsStore& settings, SpeakerTest& test);
    void setDevices(std::vector<AudioOutputDevice> devices, std::optional<uint32_t> defaultDevice);
    // Shows a profile of the settings; the user's changes go into the profile with its id.
    void showProfile(const OutputProfile& profile);

private:
    struct SpeakerRow {
        QComboBox* output;
        TrimStepper* trim;
        QToolButton* ident;
        QWidget* unheard;
    };
    void makeForm();
    QWidget* makeGrid();
    void fillDevices();
    void rebuildGrid();
    void refresh();
    void refreshChannels(QComboBox& picker, int current) const;
    void refreshRows();
    void playIdent(size_t speaker);
    // The profile's device, without channels when there is none.
    AudioOutputDevice device() const;
    QComboBox* channelPicker(const QString& name, std::function<void(OutputProfile&, int)> edit);
    void edit(const std::function<void(OutputProfile&)>& change);

    SettingsStore& settings_;
    OutputProfile profile_;
    std::vector<AudioOutputDevice> devices_;
    std::optional<uint32_t> defaultDevice_;
    SpeakerTest& test_;
    QFormLayout* form_;
    QLineEdit* name_;
    QComboBox* kind_;
    QComboBox* device_;
    QComboBox* left_;
    QComboBox* right_;
    QComboBox* layout_;
    QWidget* speakerPart_;
    QPushButton* byPosition_ = nullptr;
    QLabel* warning_ = nullptr;
    QGridLayout* grid_ = nullptr;
    std::vector<SpeakerRow> rows_;
    std::vector<SpeakerID> gridSpeakers_;  // what the rows stand for
};

}  // namespace brindlehum
