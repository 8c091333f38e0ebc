#include "ui/monitor/monitor_rows.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QToolButton>
#include <functional>

#include "ui/look/icons.h"
#include "ui/look/menu_button.h"
#include "ui/look/tabular_font.h"
#include "ui/look/utf8_text.h"
#include "ui/look/value_slider.h"

namespace brindlehum {
namespace {

// Adding zero turns a negative zero into "+0.0".
QString decibels(double db) {
    return QString::asprintf("%+.1f dB", db + 0.0);
}

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

QLabel* readout(double points, const QString& widestText) {
    auto* label = new QLabel;
    label->setFont(tabularFont(points));
    label->setMinimumWidth(QFontMetrics(label->font()).horizontalAdvance(widestText) + 4);
    return label;
}

}  // namespace

MonitorLevel::MonitorLevel(MonitorEngine& monitor, QWidget* parent) : QWidget(parent), monitor_(monitor) {
    readout_ = readout(24, "-60.0 dB");
    slider_ = new ValueSlider("Monitor volume", {MonitorState::lowestDB, MonitorState::highestDB, 0.5, 0, 1});
    slider_->setToolTip("Double-click: 0 dB");
    slider_->onEdit = [this](double db) { edit(monitor_, [db](MonitorState& s) { s.volumeDB = db; }); };
    dim_ = toggle("Dim", "20 dB lower (D)", [this](bool on) { edit(monitor_, [on](MonitorState& s) { s.dim = on; }); });
    mute_ = toggle("Mute", "Silences all speakers (M)",
                   [this](bool on) { edit(monitor_, [on](MonitorState& s) { s.mute = on; }); });
    mute_->setProperty("role", "alarm");
    auto* row = rowIn(this);
    row->addWidget(readout_);
    row->addWidget(slider_, 1);
    row->addWidget(dim_);
    row->addWidget(mute_);
    refresh();
}

void MonitorLevel::refresh() {
    const MonitorState& state = monitor_.state();
    readout_->setText(decibels(state.volumeDB));
    slider_->setNumber(state.volumeDB);
    dim_->setChecked(state.dim);
    mute_->setChecked(state.mute);
}

MonitorListen::MonitorListen(MonitorEngine& monitor, QWidget* parent) : QWidget(parent), monitor_(monitor) {
    auto* row = rowIn(this);
    row->setSpacing(4);
    auto* caption = new QLabel("Listen");
    caption->setProperty("role", "secondary");
    row->addWidget(caption);
    row->addSpacing(8);
    for (const MonitorMode mode : allMonitorModes) {
        modes_.push_back(toggle(textOf(displayName(mode)), "Audition the mix folded down, on the matching speakers",
                                [this, mode](bool) { edit(monitor_, [mode](MonitorState& s) { s.mode = mode; }); }));
        row->addWidget(modes_.back());
    }
    row->addStretch(1);
    fold_ = toggle("Folded to L and R", "Hear the fold-down instead of the speakers around you",
                   [this](bool on) { edit(monitor_, [on](MonitorState& s) { s.headphonesFold = on; }); });
    row->addWidget(fold_);
    refresh();
}

void MonitorListen::refresh() {
    const MonitorState& state = monitor_.state();
    for (size_t i = 0; i < modes_.size(); ++i) { modes_[i]->setChecked(allMonitorModes[i] == state.mode); }
    fold_->setVisible(monitor_.profile().kind == OutputProfile::Kind::headphones);
    fold_->setChecked(state.headphonesFold);
}

MonitorTrim::MonitorTrim(MonitorEngine& monitor, SettingsStore& settings, QWidget* parent)
    : QWidget(parent), monitor_(monitor), settings_(settings) {
    heights_ = new ValueSlider("Height trim", {-12, 6, 0.5, 0, 1});
    heights_->setToolTip("Double-click: 0 dB");
    heights_->setMaximumWidth(240);
    heights_->onEdit = [this](double db) { edit(monitor_, [db](MonitorState& s) { s.heightTrimDB = db; }); };
    readout_ = readout(10, "-12.0 dB");
    clear_ = new QPushButton("Clear solos and mutes");
    connect(clear_, &QPushButton::clicked, this, [this] {
        edit(monitor_, [](MonitorState& s) {
            s.solo.clear();
            s.muted.clear();
        });
    });
    offset_ = new QWidget;
    auto* offsetRow = rowIn(offset_);
    input_ = new QSpinBox;
    input_->setRange(1, 129);
    input_->setAccessibleName("Source starts at input");
    connect(input_, &QSpinBox::valueChanged, this,
            [this](int input) { edit(monitor_, [input](MonitorState& s) { s.sourceOffset = input - 1; }); });
    offsetRow->addWidget(new QLabel("Source starts at input"));
    offsetRow->addWidget(input_);
    auto* caption = new QLabel("Height trim");
    caption->setProperty("role", "secondary");
    auto* row = rowIn(this);
    row->addWidget(caption);
    row->addWidget(heights_, 1);
    row->addWidget(readout_);
    row->addWidget(clear_);
    row->addStretch(1);
    row->addWidget(offset_);
    refresh();
}

void MonitorTrim::refresh() {
    const MonitorState& state = monitor_.state();
    heights_->setNumber(state.heightTrimDB);
    readout_->setText(decibels(state.heightTrimDB));
    clear_->setVisible(!state.solo.empty() || !state.muted.empty());
    offset_->setVisible(settings_.value().expertMode);
    const QSignalBlocker quiet(input_);
    input_->setValue(state.sourceOffset + 1);
}

MonitorUpmix::MonitorUpmix(MonitorEngine& monitor, QWidget* parent) : QWidget(parent), monitor_(monitor) {
    on_ = toggle("Upmix", {}, [this](bool on) { edit(monitor_, [on](MonitorState& s) { s.upmix.enabled = on; }); });
    on_->setIcon(symbol("upmix"));
    preset_ = new MenuButton("Preset", {}, [this](QMenu& menu) {
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
    reset_ = new QPushButton("Reset");
    reset_->setToolTip("Back to the preset's values");
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
    on_->setToolTip(can ? "Spread the bus over every speaker in the room"
                        : "The source already uses every speaker in the room");
    on_->setChecked(upmix.enabled);
    preset_->setChoice(textOf(displayName(upmix.preset)));
    preset_->setToolTip(textOf(description(upmix.preset)));
    reset_->setVisible(upmix.params != params(upmix.preset));
}

}  // namespace brindlehum
