// Decides when the panel is seen, and moves it.
#include "ui/panel/hud_controller.h"

#include <QGuiApplication>
#include <QScreen>
#include <cmath>

#include "mix/player/player_model.h"
#include "settings/settings_store.h"
#include "ui/panel/hud_panel.h"
#include "ui/player/player_view.h"

namespace brindlehum {
namespace {

// A screen's upper left corner is the same in device and in logical pixels; what lies on it is scaled from there.
ScreenRect deviceRect(const QRect& logical, const QPoint& corner, double scale) {
    const auto at = [scale](int from, int value) { return from + int(std::lround((value - from) * scale)); };
    return {at(corner.x(), logical.x()), at(corner.y(), logical.y()), int(std::lround(logical.width() * scale)),
            int(std::lround(logical.height() * scale))};
}

QRect logicalRect(const ScreenRect& device, const QPoint& corner, double scale) {
    const auto at = [scale](int from, int value) { return from + int(std::lround((value - from) / scale)); };
    return {at(corner.x(), device.x), at(corner.y(), device.y), int(std::lround(device.width / scale)),
            int(std::lround(device.height / scale))};
}

std::vector<HUDPlacement::Screen> desktopScreens() {
    std::vector<HUDPlacement::Screen> all;
    for (const QScreen* screen : QGuiApplication::screens()) {
        const QPoint corner = screen->geometry().topLeft();
        const double scale = screen->devicePixelRatio();
        all.push_back({deviceRect(screen->geometry(), corner, scale),
                       deviceRect(screen->availableGeometry(), corner, scale), scale});
    }
    return all;
}

}  // namespace

HUDController::HUDController(PlayerModel& player, SettingsStore& settings)
    : hasCompositor([] { return false; }), screens(desktopScreens), player_(player), settings_(settings) {
    connect(&player, &PlayerModel::changed, this, &HUDController::reposition);
    connect(&settings, &SettingsStore::changed, this, &HUDController::reposition);
}

HUDController::~HUDController() = default;

HUDPanel& HUDController::panel() {
    if (panel_) { return *panel_; }
    view_ = new PlayerView(player_, settings_, WaveformView::Style::hud);
    panel_ = std::make_unique<HUDPanel>(view_);
    connect(view_, &PlayerView::editorAsked, this, &HUDController::editorAsked);
    connect(view_, &PlayerView::upmixPanelAsked, this, &HUDController::upmixPanelAsked);
    connect(panel_.get(), &HUDPanel::closeAsked, this, [this] {
        settings_.change([](AppSettings& s) { s.finderPanel = false; });
        player_.notify(
            tr("The panel is off: “File Manager Panel” in the status menu turns it on again.").toStdString());
    });
    return *panel_;
}

PlayerView& HUDController::player() {
    panel();
    return *view_;
}

void HUDController::setFileManager(bool inFront, const std::optional<ScreenRect>& window) {
    active_ = inFront;
    if (inFront) { lastWindow_ = window; }
    reposition();
}

void HUDController::setFileManagerWindow(uint64_t nativeId) {
    nativeId_ = nativeId;
    if (panel_ && panel_->isVisible()) { panel_->setOwnerWindow(nativeId); }
}

void HUDController::reposition() {
    if (!settings_.value().finderPanel || !active_ || !lastWindow_) {
        if (panel_) { panel_->hide(); }
        return;
    }
    const auto all = screens();
    const auto source = player_.sound().source();
    const auto place = HUDPlacement::of(*lastWindow_, source && source->asAmbisonic(), all);
    if (!place) { return; }
    const HUDPlacement::Screen& screen = all[place->screen];
    const QRect frame = logicalRect(place->frame, {screen.frame.x, screen.frame.y}, screen.scale);
    HUDPanel& panel = this->panel();
    if (panel.geometry() != frame) { panel.setGeometry(frame); }
    if (panel.isVisible()) { return; }
    panel.setTranslucent(hasCompositor());
    panel.setOwnerWindow(nativeId_);
    panel.show();
}

}  // namespace brindlehum
