// The menus of format, listen mode, profile and drag form.
#include "ui/player/source_bar.h"

#include <QHBoxLayout>
#include <QMenu>
#include <algorithm>

#include "ui/look/elided_label.h"
#include "ui/look/icons.h"
#include "ui/look/menu_button.h"
#include "ui/look/profile_icon.h"
#include "ui/player/drag_handle.h"

namespace brindlehum {

QString listenName(ListenMode mode) {
    switch (mode) {
        case ListenMode::normal:
            return "Stereo";
        case ListenMode::mono:
            return "Mono sum";
        case ListenMode::left:
            return "Left only";
        case ListenMode::right:
            return "Right only";
        case ListenMode::midSide:
            return "M/S decode";
    }
    return {};
}

SourceBar::SourceBar(PlayerModel& player, const SettingsStore& settings, QWidget* parent)
    : QWidget(parent), player_(player), settings_(settings) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    format_ = new MenuButton("Source format", "How the channels are interpreted", [this](QMenu& m) { fillFormats(m); });
    format_->setIcon(symbol("channels"));
    listen_ = new MenuButton("Listen", "Monitor mode for stereo files", [this](QMenu& m) { fillListen(m); });
    listen_->setIcon(symbol("listen"));
    profile_ = new MenuButton("Output profile", "Output profile", [this](QMenu& m) { fillProfiles(m); });
    device_ = new ElidedLabel(Qt::ElideRight);
    device_->setProperty("role", "secondary");
    drag_ = new MenuButton("Drag as", "What a drag into the DAW delivers", [this](QMenu& m) { fillDrag(m); });
    drag_->setIcon(symbol("drag"));
    handle_ = new DragHandle;
    row->addWidget(format_);
    row->addWidget(listen_);
    row->addWidget(profile_);
    row->addWidget(device_, 1);
    row->addStretch();
    row->addWidget(drag_);
    row->addWidget(handle_);
    refresh();
}

void SourceBar::refresh() {
    const auto source = player_.sound().source();
    const bool loaded = player_.sound().info() && source;
    format_->setVisible(loaded);
    if (loaded) {
        format_->setChoice(QString::fromStdString(
            player_.sound().formatOverride() ? source->displayName()
                                             : "Auto (" + player_.sound().info()->detected.displayName() + ")"));
    }
    listen_->setVisible(loaded && *source == SourceFormat::stereo());
    listen_->setChoice(listenName(player_.listening().listen()));
    const OutputProfile& profile = player_.listening().profile();
    profile_->setIcon(symbol(profileIcon(profile)));
    profile_->setChoice(QString::fromStdString(profile.name));
    refreshDevice();
    drag_->setVisible(loaded && player_.dragOut().dragOptions().size() > 1);
    drag_->setChoice(QString::fromStdString(name(player_.dragOut().dragExport())));
    handle_->setVisible(loaded);
}

void SourceBar::setNarrow(bool narrow) {
    const auto style = narrow ? Qt::ToolButtonIconOnly : Qt::ToolButtonTextBesideIcon;
    for (QToolButton* button : {static_cast<QToolButton*>(format_), static_cast<QToolButton*>(listen_),
                                static_cast<QToolButton*>(profile_), static_cast<QToolButton*>(drag_)}) {
        button->setToolButtonStyle(style);
    }
    device_->setVisible(!narrow);
}

void SourceBar::refreshDevice() {
    const AudioDevices& system = player_.listening().devices();
    const auto& uid = player_.listening().profile().deviceUID;
    // Listing the devices can take a while: do it only when the answer may have changed.
    const DeviceKey key{uid, player_.listening().isDeviceOpen(), player_.isPlaying()};
    if (shownFor_ == key) { return; }
    shownFor_ = key;
    const auto devices = system.allOutputs();
    const auto named = std::ranges::find_if(devices, [&](const auto& device) { return device.uid == uid; });
    const auto standard =
        std::ranges::find_if(devices, [id = system.defaultOutput()](const auto& device) { return device.id == id; });
    if (named != devices.end()) {
        device_->setFullText("on " + QString::fromStdString(named->name));
    } else if (standard != devices.end()) {
        device_->setFullText("on " + QString::fromStdString(standard->name) +
                             (uid ? ", for the profile's device is unavailable" : ""));
    } else {
        device_->setFullText("no output device");
    }
}

void SourceBar::fillFormats(QMenu& menu) {
    const auto& info = player_.sound().info();
    if (!info) { return; }
    const auto& chosen = player_.sound().formatOverride();
    addChoice(menu, QString::fromStdString("Auto (" + info->detected.displayName() + ")"), !chosen,
              [this] { player_.sound().setFormatOverride(std::nullopt); });
    menu.addSeparator();
    for (const auto& format : SourceFormat::options(info->channels)) {
        addChoice(menu, QString::fromStdString(format.displayName()), chosen == format,
                  [this, format] { player_.sound().setFormatOverride(format); });
    }
}

void SourceBar::fillListen(QMenu& menu) {
    for (const auto mode : allListenModes) {
        addChoice(menu, listenName(mode), mode == player_.listening().listen(),
                  [this, mode] { player_.listening().setListen(mode); });
    }
}

void SourceBar::fillProfiles(QMenu& menu) {
    const UUID active = player_.listening().profile().id;
    for (const auto& profile : settings_.value().profiles) {
        addChoice(menu, QString::fromStdString(profile.name), profile.id == active, [this, id = profile.id] {
            player_.listening().selectProfile(id);
        })->setIcon(symbol(profileIcon(profile)));
    }
}

void SourceBar::fillDrag(QMenu& menu) {
    for (const auto mode : player_.dragOut().dragOptions()) {
        addChoice(menu, QString::fromStdString(name(mode)), mode == player_.dragOut().dragExport(),
                  [this, mode] { player_.dragOut().setDragExport(mode); });
    }
}

}  // namespace brindlehum
