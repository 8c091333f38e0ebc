#include "ui/monitor/monitor_rows.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QToolButton>
#include <algorithm>
#include <functional>

#include "ui/look/icons.h"
#include "ui/look/menu_button.h"
#include "ui/look/number_field.h"
#include "ui/look/tabular_font.h"
#include "ui/look/utf8_text.h"
#include "ui/look/value_slider.h"
#include "ui/monitor/reference_button.h"

namespace brindlehum {
namespace {

void edit(MonitorEngine& monitor, const std::function<void(MonitorState&)>& change) {
    MonitorState next = monitor.state();
    change(next);
    monitor.setState(next);
}

QHBoxLayout* rowIn(QWidget* widget) {
    auto* row = new QHBoxLayout(widget);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(12);
    return row;
}

QToolButton* toggle(const QString& text, const QString& help, std::function<void(bool)> set) {
    auto* button = new QToolButton;
    button->setText(text);
    button->setToolTip(help);
    button->setCheckable(true);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    QObject::connect(button, &QToolButton::clicked, button, [set = std::move(set)](bool on) { set(on); });
    return button;
}

// As wide as its widest text.
NumberField* field(const QString& name, NumberField::Range range, double points) {
    auto* field = new NumberField(name, range);
    field->setFont(tabularFont(points));
    field->setToolTip(QCoreApplication::translate("MonitorRows", "Type a number, or turn the wheel. Double-click: %1")
                          .arg(field->text()));
    field->setFixedWidth(QFontMetrics(field->font()).horizontalAdvance("-60.0 dB") + 20);
    return field;
}

bool hasHeights(const OutputProfile& profile) {
    const bool headphones = profile.kind == OutputProfile::Kind::headphones;
    const SpeakerList& list = speakers(headphones ? LayoutID::l916 : profile.layout);
    return std::ranges::any_of(list, [&](SpeakerID each) { return direction(each, list).el > 20; });
}

}  // namespace

MonitorLevel::MonitorLevel(MonitorEngine& monitor, QWidget* parent) : QWidget(parent), monitor_(monitor) {
    constexpr double low = MonitorState::lowestDB;
    constexpr double high = MonitorState::highestDB;
    const auto setVolume = [this](double db) { edit(monitor_, [db](MonitorState& s) { s.volumeDB = db; }); };
    volume_ = field(tr("Monitor volume in dB"), {low, high, 0.5, 0}, 18);
    volume_->setMinimumHeight(QFontMetrics(volume_->font()).height() + 6);
    volume_->onEdit = setVolume;
    spl_ = new QLabel;
    spl_->setFont(tabularFont(11));
    spl_->setProperty("role", "secondary");
    spl_->setAccessibleName(tr("Sound level"));
    slider_ = new ValueSlider(tr("Monitor volume"), {low, high, 0.5, 0, 1});
    slider_->setToolTip(tr("Double-click: 0 dB"));
    slider_->onEdit = setVolume;
    reference_ = new ReferenceButton(monitor);
    dim_ = toggle(tr("Dim"), tr("Lower by this much (D)"),
                  [this](bool on) { edit(monitor_, [on](MonitorState& s) { s.dim = on; }); });
    dimBy_ = field(tr("Dim by"), {low, 0, 1, MonitorState().dimDB}, 10);
    dimBy_->onEdit = [this](double db) { edit(monitor_, [db](MonitorState& s) { s.dimDB = db; }); };
    mute_ = toggle(tr("Mute"), tr("Silences all speakers (M)"),
                   [this](bool on) { edit(monitor_, [on](MonitorState& s) { s.mute = on; }); });
    mute_->setProperty("role", "alarm");
    auto* row = rowIn(this);
    row->setSpacing(8);
    row->addWidget(volume_);
    row->addWidget(spl_);
    row->addWidget(slider_, 1);
    row->addWidget(reference_);
    row->addWidget(dim_);
    row->addWidget(dimBy_);
    row->addWidget(mute_);
    refresh();
}

void MonitorLevel::refresh() {
    const MonitorState& state = monitor_.state();
    volume_->setNumber(state.volumeDB);
    const auto spl = state.levelSPL();
    spl_->setVisible(spl.has_value());
    spl_->setText(state.mute ? tr("muted") : QString::asprintf("%.1f dB SPL", spl.value_or(0)));
    slider_->setNumber(state.volumeDB);
    reference_->refresh();
    dim_->setChecked(state.dim);
    dimBy_->setNumber(state.dimDB);
    mute_->setChecked(state.mute);
}

MonitorListen::MonitorListen(MonitorEngine& monitor, QWidget* parent) : QWidget(parent), monitor_(monitor) {
    auto* row = rowIn(this);
    row->setSpacing(4);
    auto* caption = new QLabel(tr("Listen"));
    caption->setProperty("role", "secondary");
    row->addWidget(caption);
    row->addSpacing(8);
    for (const MonitorMode mode : allMonitorModes) {
        modes_.push_back(toggle(textOf(displayName(mode)), tr("Audition the mix folded down, on the matching speakers"),
                                [this, mode](bool) { edit(monitor_, [mode](MonitorState& s) { s.mode = mode; }); }));
        row->addWidget(modes_.back());
    }
    row->addSpacing(12);
    addCheck(tr("Mono sum"), tr("Hold: half the sum of the 2.0 fold-down"), MonitorCheck::monoSum);
    addCheck(tr("L − R"), tr("Hold: half the difference of the 2.0 fold-down, its sides"), MonitorCheck::side);
    row->addWidget(checking_ = new QLabel);
    checking_->setProperty("role", "warning");
    row->addStretch(1);
    fold_ = toggle(tr("Folded to L and R"), tr("Hear the fold-down instead of the speakers around you"),
                   [this](bool on) { edit(monitor_, [on](MonitorState& s) { s.headphonesFold = on; }); });
    row->addWidget(fold_);
    refresh();
}

void MonitorListen::addCheck(const QString& text, const QString& help, MonitorCheck check) {
    auto* button = toggle(text, help, [](bool) {});
    button->setProperty("role", "alarm");
    const auto set = [this](MonitorCheck to) { edit(monitor_, [to](MonitorState& s) { s.check = to; }); };
    connect(button, &QToolButton::pressed, this, [set, check] { set(check); });
    connect(button, &QToolButton::released, this, [set] { set(MonitorCheck::none); });
    layout()->addWidget(button);
    checks_.emplace_back(check, button);
}

// A hidden button is never released.
void MonitorListen::hideEvent(QHideEvent* /*event*/) {
    if (monitor_.state().check != MonitorCheck::none) {
        edit(monitor_, [](MonitorState& s) { s.check = MonitorCheck::none; });
    }
}

void MonitorListen::refresh() {
    const MonitorState& state = monitor_.state();
    const bool checks = state.check != MonitorCheck::none;
    for (size_t i = 0; i < modes_.size(); ++i) { modes_[i]->setChecked(!checks && allMonitorModes[i] == state.mode); }
    for (const auto& [check, button] : checks_) { button->setChecked(check == state.check); }
    checking_->setText(!checks                                ? QString()
                       : state.check == MonitorCheck::monoSum ? tr("Hearing the mono sum")
                                                              : tr("Hearing L − R"));
    fold_->setVisible(monitor_.profile().kind == OutputProfile::Kind::headphones);
    fold_->setChecked(state.headphonesFold);
}

MonitorTrim::MonitorTrim(MonitorEngine& monitor, SettingsStore& settings, QWidget* parent)
    : QWidget(parent), monitor_(monitor), settings_(settings) {
    constexpr double low = MonitorState::lowestTrimDB;
    constexpr double high = MonitorState::highestTrimDB;
    const auto setHeights = [this](double db) { edit(monitor_, [db](MonitorState& s) { s.heightTrimDB = db; }); };
    heights_ = new ValueSlider(tr("Height trim"), {low, high, 0.5, 0, 1});
    heights_->setToolTip(tr("Double-click: 0 dB"));
    heights_->setMaximumWidth(240);
    heights_->onEdit = setHeights;
    heightsBy_ = field(tr("Height trim in dB"), {low, high, 0.5, 0}, 10);
    heightsBy_->onEdit = setHeights;
    offset_ = new QWidget;
    auto* offsetRow = rowIn(offset_);
    input_ = new QSpinBox;
    input_->setRange(1, 129);
    input_->setAccessibleName(tr("Source starts at input"));
    connect(input_, &QSpinBox::valueChanged, this,
            [this](int input) { edit(monitor_, [input](MonitorState& s) { s.sourceOffset = input - 1; }); });
    offsetRow->addWidget(new QLabel(tr("Source starts at input")));
    offsetRow->addWidget(input_);
    auto* caption = new QLabel(tr("Height trim"));
    caption->setProperty("role", "secondary");
    auto* row = rowIn(this);
    row->addWidget(caption);
    row->addWidget(heights_, 1);
    row->addWidget(heightsBy_);
    row->addStretch(1);
    row->addWidget(offset_);
    refresh();
}

void MonitorTrim::refresh() {
    const MonitorState& state = monitor_.state();
    heights_->setNumber(state.heightTrimDB);
    heightsBy_->setNumber(state.heightTrimDB);
    const bool any = hasHeights(monitor_.profile());
    heights_->setEnabled(any);
    heightsBy_->setEnabled(any);
    setToolTip(any ? QString() : tr("The room has no height speakers"));
    offset_->setVisible(settings_.value().expertMode);
    const QSignalBlocker quiet(input_);
    input_->setValue(state.sourceOffset + 1);
}

void MonitorUpmixNumbers::edit(const UpmixParams& params) {
    brindlehum::edit(monitor_, [&params](MonitorState& s) { s.upmix.params = params; });
}

MonitorUpmix::MonitorUpmix(MonitorEngine& monitor, QWidget* parent) : QWidget(parent), monitor_(monitor) {
    on_ = toggle(tr("Upmix"), {}, [this](bool on) { edit(monitor_, [on](MonitorState& s) { s.upmix.enabled = on; }); });
    on_->setIcon(symbol("upmix"));
    preset_ = new MenuButton(tr("Preset"), {}, [this](QMenu& menu) {
        menu.setToolTipsVisible(true);
        for (const UpmixPreset preset : allUpmixPresets) {
            addChoice(menu, textOf(displayName(preset)), monitor_.state().upmix.preset == preset, [this, preset] {
                edit(monitor_, [preset](MonitorState& s) {
                    s.upmix.preset = preset;
                    s.upmix.params = params(preset);
                    s.upmix.own.clear();
                });
            })->setToolTip(textOf(description(preset)));
        }
    });
    reset_ = new QPushButton(tr("Reset"));
    reset_->setToolTip(tr("Back to the preset's values"));
    connect(reset_, &QPushButton::clicked, this,
            [this] { edit(monitor_, [](MonitorState& s) { s.upmix.params = params(s.upmix.preset); }); });
    auto* row = rowIn(this);
    row->addWidget(on_);
    row->addWidget(preset_);
    row->addWidget(reset_);
    row->addStretch(1);
    refresh();
}

void MonitorUpmix::refresh() {
    const UpmixSettings& upmix = monitor_.state().upmix;
    const bool can = monitor_.upmixAvailable();
    setEnabled(can);
    on_->setToolTip(can ? tr("Spread the bus over every speaker in the room")
                        : tr("The source already uses every speaker in the room"));
    on_->setChecked(upmix.enabled);
    preset_->setChoice(textOf(displayName(upmix.preset)));
    preset_->setToolTip(textOf(description(upmix.preset)));
    reset_->setVisible(upmix.params != params(upmix.preset));
}

}  // namespace brindlehum
