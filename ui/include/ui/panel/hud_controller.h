// HUDController: shows the audition panel while the file manager is in front, and keeps it under its window.
#pragma once

#include <QObject>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "app/hud_placement.h"
#include "platform/screen_rect.h"

namespace brindlehum {

class HUDPanel;
class PlayerModel;
class PlayerView;
class SettingsStore;

// Main thread. Placed anew at each change of the player or the settings, too: a sound field makes the panel higher, and
// the setting `finderPanel` turns it off.
class HUDController : public QObject {
    Q_OBJECT
public:
    HUDController(PlayerModel& player, SettingsStore& settings);
    ~HUDController() override;

    // Whether the file manager is in front, and where its front window lies. The last place is kept while it isn't.
    void setFileManager(bool inFront, const std::optional<ScreenRect>& window);
    // That window's number in the window system; 0 for none.
    void setFileManagerWindow(uint64_t nativeId);
    // Whether the desktop blends windows; asked when the panel appears.
    std::function<bool()> hasCompositor;
    // The screens, the main one first; a test may set it. By default those of the desktop.
    std::function<std::vector<HUDPlacement::Screen>()> screens;

    // Made when first needed: most starts never see it.
    HUDPanel& panel();
    PlayerView& player();

Q_SIGNALS:
    void editorAsked();      // as PlayerView's
    void upmixPanelAsked();  // as PlayerView's

private:
    void reposition();

    PlayerModel& player_;
    SettingsStore& settings_;
    PlayerView* view_ = nullptr;  // in the panel
    std::unique_ptr<HUDPanel> panel_;
    std::optional<ScreenRect> lastWindow_;
    bool active_ = false;
    uint64_t nativeId_ = 0;
};

}  // namespace brindlehum
