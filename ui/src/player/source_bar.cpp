// The menus of format, listen mode, upmix, profile and drag form.
#include "ui/player/source_bar.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QStyle>
#include <algorithm>
#include <iterator>

#include "mix/player/player_model.h"
#include "settings/settings_store.h"
#include "ui/look/elided_label.h"
#include "ui/look/icons.h"
#include "ui/look/menu_button.h"
#include "ui/look/path_text.h"
#include "ui/look/plain_tool_tip.h"
#include "ui/look/profile_icon.h"
#include "ui/player/drag_handle.h"
#include "ui/player/drag_menu.h"
#include "ui/player/upmix_menu.h"

namespace brindlehum {

namespace {

QString listenName(ListenMode mode) {
    const std::string_view name = displayName(mode);
    return QString::fromLatin1(name.data(), qsizetype(name.size()));
}

constexpr auto upmixTip = QT_TRANSLATE_NOOP("brindlehum::SourceBar", "Upmix: spread this file over every speaker");
constexpr int longestChoice = 130;  // logical pixels

}  // namespace

SourceBar::SourceBar(PlayerModel& player, const SettingsStore& settings, QWidget* parent)
    : QWidget(parent),
      sound_(player.sound()),
      listening_(player.listening()),
      tuning_(player.upmix()),
      compare_(player.compare()),
      dragOut_(player.dragOut()),
      settings_(settings) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    format_ = new MenuButton(tr("Source format"), tr("How the channels are interpreted"),
                             [this](QMenu& m) { fillFormats(m); });
    setSymbol(*format_, "channels");
    detect_ = new QToolButton;
    setSymbol(*detect_, "clear");
    detect_->setIconSize({12, 12});
    detect_->setProperty("role", "chip");
    detect_->setFocusPolicy(Qt::StrongFocus);
    connect(detect_, &QToolButton::clicked, this, [this] { sound_.setFormatOverride(std::nullopt); });
    listen_ = new MenuButton(tr("Listen"), tr("Monitor mode for stereo files"), [this](QMenu& m) { fillListen(m); });
    setSymbol(*listen_, "listen");
    upmix_ = new MenuButton(tr("Upmix"), tr(upmixTip), [this](QMenu& m) { fillUpmix(m); });
    setSymbol(*upmix_, "upmix");
    profile_ = new MenuButton(tr("Output profile"), tr("Output profile"), [this](QMenu& m) { fillProfiles(m); });
    device_ = new ElidedLabel(Qt::ElideRight);
    device_->setProperty("role", "secondary");
    drag_ = new MenuButton(tr("Drag as"), tr("What a drag into the DAW delivers"),
                           [this](QMenu& m) { fillDragForms(m, dragOut_); });
    setSymbol(*drag_, "drag");
    handle_ = new DragHandle;
    edit_ = new QToolButton;
    setSymbol(*edit_, "edit");
    edit_->setAccessibleName(tr("Open in the editor"));
    edit_->setToolTip(tr("Open in the editor (Ctrl+E): pins the intro, loop and ending, makes temp edits"));
    edit_->setFocusPolicy(Qt::StrongFocus);
    connect(edit_, &QToolButton::clicked, this, &SourceBar::editorAsked);
    row->addWidget(format_);
    row->addWidget(detect_);
    row->addWidget(listen_);
    row->addWidget(upmix_);
    row->addWidget(profile_);
    row->addWidget(device_, 1);
    row->addStretch();
    row->addWidget(edit_);
    row->addWidget(drag_);
    row->addWidget(handle_);
    refresh();
}

void SourceBar::refresh() {
    const auto source = sound_.source();
    const bool loaded = sound_.info() && source;
    format_->setVisible(loaded);
    if (loaded) { refreshFormat(*source); }
    detect_->setVisible(loaded && sound_.formatOverride());
    listen_->setVisible(loaded && *source == SourceFormat::stereo());
    listen_->setChoice(listenName(listening_.listen()));
    refreshUpmix(loaded);
    const OutputProfile& profile = listening_.profile();
    setSymbol(*profile_, profileIcon(profile));
    profile_->setChoice(QString::fromStdString(profile.name));
    refreshDevice();
    drag_->setVisible(loaded && dragOut_.dragOptions().size() > 1);
    drag_->setChoice(QString::fromStdString(dragOut_.formName(dragOut_.dragExport())));
    edit_->setVisible(loaded);
    handle_->setVisible(loaded);
}

// Shows that an override is at work, and whether the file's or the folder's.
void SourceBar::refreshFormat(const SourceFormat& source) {
    const QString detected = QString::fromStdString(sound_.info()->detected.displayName());
    const QString name = QString::fromStdString(source.displayName());
    const bool isOverride = sound_.formatOverride().has_value();
    format_->setChoice(isOverride ? (isOfFolder() ? tr("%1 (folder)") : tr("%1 (set)")).arg(name)
                                  : tr("Auto (%1)").arg(detected));
    const QString chosen =
        isOfFolder()
            ? tr("How the channels are interpreted: you chose %1 for this folder. Without that they would be %2")
            : tr("How the channels are interpreted: you chose %1 for this file. Without that they would be %2");
    format_->setToolTip(isOverride ? chosen.arg(name, detected) : tr("How the channels are interpreted"));
    detect_->setToolTip(tr("Back to Auto (%1) for this file").arg(detected));
    detect_->setAccessibleName(tr("Back to Auto (%1)").arg(detected));
}

// Shows with an icon alone, too, whether the upmix is on. An upmix takes both channels as they are: a listen mode would
// do nothing.
void SourceBar::refreshUpmix(bool loaded) {
    const UpmixState state = loaded ? listening_.upmixState() : UpmixState::impossible;
    const bool runs = state == UpmixState::on;
    const QString choice = upmixChoice(tuning_);
    const QString problem = upmixProblem(listening_);
    const QString shown = compare_.isPlain() ? tr("Off (comparing)") : choice;
    upmix_->setVisible(state != UpmixState::impossible);
    upmix_->setChoice(choice);
    upmix_->setText(upmix_->fontMetrics().elidedText(shown, Qt::ElideRight, longestChoice).replace('&', "&&"));
    upmix_->setToolTip(plainToolTip((problem.isEmpty() ? tr(upmixTip) : problem) + "\n" + tr("Now: %1").arg(choice)));
    const bool unheard = state == UpmixState::unheard;
    setSymbol(*upmix_, unheard ? "warning" : "upmix", unheard ? SymbolRole::warning : SymbolRole::control);
    if (upmix_->property("lit").toBool() != runs) {
        upmix_->setProperty("lit", runs);
        upmix_->style()->polish(upmix_);
    }
    listen_->setEnabled(!runs);
    listen_->setToolTip(listen_->isEnabled() ? tr("Monitor mode for stereo files")
                                             : tr("Monitor modes don't apply while the file is upmixed"));
}

bool SourceBar::isOfFolder() const {
    return sound_.formatOverride() && sound_.formatOverride() == sound_.folderOverride();
}

void SourceBar::setNarrow(bool narrow) {
    const auto style = narrow ? Qt::ToolButtonIconOnly : Qt::ToolButtonTextBesideIcon;
    for (MenuButton* button : {format_, listen_, upmix_, profile_, drag_}) { button->setToolButtonStyle(style); }
    handle_->setToolButtonStyle(style);
    device_->setVisible(!narrow);
}

void SourceBar::refreshDevice() {
    const auto& uid = listening_.profile().deviceUID;
    const auto device = listening_.device();
    switch (listening_.devices().server()) {
        case SoundServer::absent:
            return device_->setFullText(tr("no sound server"));
        case SoundServer::silent:
            return device_->setFullText(tr("the sound server doesn't answer"));
        case SoundServer::running:
            break;
    }
    if (!device) { return device_->setFullText(tr("no output device")); }
    const bool standsIn = uid && device->uid != *uid;
    device_->setFullText((standsIn ? tr("on %1, for the profile's device is unavailable") : tr("on %1"))
                             .arg(QString::fromStdString(device->name)));
}

void SourceBar::fillFormats(QMenu& menu) {
    const auto& info = sound_.info();
    if (!info) { return; }
    const auto& chosen = sound_.formatOverride();
    addChoice(menu, tr("Auto (%1)").arg(QString::fromStdString(info->detected.displayName())), !chosen,
              [this] { sound_.setFormatOverride(std::nullopt); });
    menu.addSeparator();
    auto formats = SourceFormat::options(info->channels);
    std::ranges::copy(SourceFormat::waveOrders(info->channels), std::back_inserter(formats));
    for (const auto& format : formats) {
        addChoice(menu, QString::fromStdString(format.displayName()), chosen == format,
                  [this, format] { sound_.setFormatOverride(format); });
    }
    if (!chosen) { return; }
    menu.addSeparator();
    const QString folder = pathText(info->url.parent_path().filename());
    addChoice(menu, tr("For All %1-Channel Files in “%2”").arg(info->channels).arg(folder), isOfFolder(),
              [this, forFolder = !isOfFolder()] { sound_.setForFolder(forFolder); });
}

void SourceBar::fillListen(QMenu& menu) {
    for (const auto mode : allListenModes) {
        addChoice(menu, listenName(mode), mode == listening_.listen(), [this, mode] { listening_.setListen(mode); });
    }
}

void SourceBar::fillUpmix(QMenu& menu) {
    addUpmixChoices(menu, tuning_);
    menu.addSeparator();
    auto* compare = addChoice(menu, tr("Compare with the Fold-Down"), compare_.isPlain() || compare_.isMeasuring(),
                              [this] { compare_.toggle(); });
    compare->setEnabled(compare_.isPossible());
    compare->setToolTip(tr("Plays the plain fold-down, as loud as the upmix"));
    connect(menu.addAction(tr("Adjust…")), &QAction::triggered, this, &SourceBar::upmixPanelAsked);
}

void SourceBar::fillProfiles(QMenu& menu) {
    const UUID active = listening_.profile().id;
    for (const auto& profile : settings_.value().profiles) {
        addChoice(menu, QString::fromStdString(profile.name), profile.id == active, [this, id = profile.id] {
            listening_.selectProfile(id);
        })->setIcon(symbol(profileIcon(profile), SymbolRole::control, &menu));
    }
}

}  // namespace brindlehum
