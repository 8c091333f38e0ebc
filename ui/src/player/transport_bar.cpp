// The buttons and the level of the player.
#include "ui/player/transport_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

#include "mix/player/listening_setup.h"
#include "mix/player/loaded_sound.h"
#include "mix/player/transport.h"
#include "settings/settings_store.h"
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
    setSymbol(*button, icon);
    button->setAccessibleName(name);
    button->setToolTip(toolTip);
    button->setCheckable(true);
    button->setFocusPolicy(Qt::StrongFocus);
    return button;
}

}  // namespace

TransportBar::TransportBar(LoadedSound& sound, Transport& transport, ListeningSetup& listening, SettingsStore& settings,
                           QWidget* parent)
    : QWidget(parent), sound_(sound), transport_(transport), listening_(listening), settings_(settings) {
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
    connect(play_, &QToolButton::clicked, this, [this] { transport_.togglePlay(); });
    loop_ = toggle(tr("Loop"), "loop", tr("Loop (selection or whole file)"));
    connect(loop_, &QToolButton::clicked, this, [this](bool on) { transport_.setLoop(on); });
    autoPlay_ = toggle(tr("Auto-play"), "autoplay", tr("Auto-play on selection"));
    connect(autoPlay_, &QToolButton::clicked, this,
            [this](bool on) { settings_.change([on](AppSettings& s) { s.autoPlay = on; }); });
}

void TransportBar::makeLevel() {
    level_ = new ValueSlider(tr("Audition level"), levelRange);
    level_->setFixedWidth(levelWidth);
    level_->onEdit = [this](double db) { listening_.setVolumeDB(db); };
    levelValue_ = new QLabel;
    levelValue_->setFont(tabularFont(9));
    levelValue_->setProperty("role", "secondary");
    levelValue_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    levelValue_->setFixedWidth(QFontMetrics(levelValue_->font()).horizontalAdvance("+00.0 dB") + 2);
}

void TransportBar::refresh() {
    const bool playing = transport_.isPlaying();
    setSymbol(*play_, playing ? "stop" : "play", SymbolRole::onAccent);
    play_->setAccessibleName(playing ? tr("Stop") : tr("Play"));
    play_->setToolTip(playing ? tr("Stop (Ctrl+Return)") : tr("Play (Ctrl+Return)"));
    play_->setEnabled(sound_.info().has_value());
    loop_->setChecked(transport_.loop());
    autoPlay_->setChecked(settings_.value().autoPlay);

    level_->setNumber(listening_.volumeDB());
    level_->setToolTip(tr("Audition level %1 dB").arg(listening_.volumeDB(), 0, 'f', 1));
    levelValue_->setText(QString::asprintf("%+.1f dB", listening_.volumeDB()));
}

void TransportBar::setNarrow(bool narrow) {
    level_->setFixedWidth(narrow ? narrowLevelWidth : levelWidth);
    levelValue_->setVisible(!narrow);
}

}  // namespace brindlehum
