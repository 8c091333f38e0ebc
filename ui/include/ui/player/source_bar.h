// SourceBar: menus for source format, listen mode, upmix, output profile and drag form, and the drag handle.
#pragma once

#include <QWidget>

class QMenu;
class QToolButton;

namespace brindlehum {

class DragHandle;
class DragOut;
class ElidedLabel;
class ListeningSetup;
class LoadedSound;
class MenuButton;
class PlayerModel;
class SettingsStore;
class SourceFormat;
class UpmixCompare;
class UpmixTuning;

class SourceBar : public QWidget {
    Q_OBJECT
public:
    SourceBar(PlayerModel& player, const SettingsStore& settings, QWidget* parent = nullptr);
    void refresh();
    // Shows icons without texts, and no device.
    void setNarrow(bool narrow);
    DragHandle& dragHandle() { return *handle_; }

Q_SIGNALS:
    void upmixPanelAsked();
    void editorAsked();

private:
    void fillFormats(QMenu& menu);
    void fillListen(QMenu& menu);
    void fillUpmix(QMenu& menu);
    void fillProfiles(QMenu& menu);
    void refreshDevice();
    void refreshFormat(const SourceFormat& source);
    void refreshUpmix(bool loaded);
    bool isOfFolder() const;  // the override in force is the one of the folder

    LoadedSound& sound_;
    ListeningSetup& listening_;
    UpmixTuning& tuning_;
    UpmixCompare& compare_;
    DragOut& dragOut_;
    const SettingsStore& settings_;
    MenuButton* format_;
    QToolButton* detect_;  // ends an override
    MenuButton* listen_;
    MenuButton* upmix_;
    MenuButton* profile_;
    ElidedLabel* device_;
    QToolButton* edit_;
    MenuButton* drag_;
    DragHandle* handle_;
};

}  // namespace brindlehum
