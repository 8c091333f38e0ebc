// The buttons and the level of the player.
#include "ui/player/transport_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

#include "ui/look/icons.h"
#include "ui/look/symbol_label.h"
#include "ui/look/tabular_font.h"
#include "ui/look/value_slider.h"

namespace brindlehum {
namespace {

constexpr ValueSlider::Range levelRange{-40, 6, 0.5, 0};  // dB
constexpr int levelWidth = 120;                           // logical pixels, as is the next
constexpr int narrowLevelWidth = 64;

QToolButton* toggle(const QString& name, const QString& icon, const QString& toolTip) {
    auto* button = new QToolButton;
    button->setIcon(symbol(icon));
    button->setAccessibleName(name);
    button->setToolTip(toolTip);
    button->setCheckable(true);
    button->setFocusPolicy(Qt::StrongFocus);
    return button;
}

}  // namespace

TransportBar::TransportBar(PlayerModel& player, SettingsStore& settings, QWidget* parent)
    : QWidget(parent), player_(player), settings_(settings) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    makeToggles();
    makeLevel();
    row->addWidget(play_);
    row->addWidget(loop_);
    row->addWidget(autoPlay_);
    row->addSpacing(8);
    row->addWidget(new SymbolLabel("level", SymbolRole::secondary));
    row->addWidget(level_);
    row->addWidget(levelValue_);
    refresh();
}

void TransportBar::makeToggles() {
    play_ = new QToolButton;
    play_->setProperty("role", "play");
    play_->setIconSize({18, 18});
    play_->setFocusPolicy(Qt::StrongFocus);
    connect(play_, &QToolButton::clicked, this, [this] { player_.togglePlay(); });
    loop_ = toggle("Loop", "loop", "Loop (selection or whole file)");
    connect(loop_, &QToolButton::clicked, this, [this](bool on) { player_.transport().setLoop(on); });
    autoPlay_ = toggle("Auto-play", "autoplay", "Auto-play on selection");
    connect(autoPlay_, &QToolButton::clicked, this,
            [this](bool on) { settings_.change([on](AppSettings& s) { s.autoPlay = on; }); });
}

void TransportBar::makeLevel() {
    level_ = new ValueSlider("Audition level", levelRange);
    level_->setFixedWidth(levelWidth);
    level_->onEdit = [this](double db) { player_.listening().setVolumeDB(db); };
    levelValue_ = new QLabel;
    levelValue_->setFont(tabularFont(9));
    levelValue_->setProperty("role", "secondary");
    levelValue_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    levelValue_->setFixedWidth(QFontMetrics(levelValue_->font()).horizontalAdvance("+00.0 dB") + 2);
}

void TransportBar::refresh() {
    const bool playing = player_.isPlaying();
    play_->setIcon(symbol(playing ? "stop" : "play", SymbolRole::onAccent));
    play_->setAccessibleName(playing ? "Stop" : "Play");
    play_->setToolTip(playing ? "Stop (Ctrl+Return)" : "Play (Ctrl+Return)");
    play_->setEnabled(player_.sound().info().has_value());
    loop_->setChecked(player_.transport().loop());
    autoPlay_->setChecked(settings_.value().autoPlay);

    level_->setNumber(player_.listening().volumeDB());
    level_->setToolTip(QString::asprintf("Audition level %.1f dB", player_.listening().volumeDB()));
    levelValue_->setText(QString::asprintf("%+.1f dB", player_.listening().volumeDB()));
}

void TransportBar::setNarrow(bool narrow) {
    level_->setFixedWidth(narrow ? narrowLevelWidth : levelWidth);
    levelValue_->setVisible(!narrow);
}

}  // namespace brindlehum
