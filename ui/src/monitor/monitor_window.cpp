// Puts the rows together, and follows the monitor.
#include "ui/monitor/monitor_window.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QShortcut>
#include <QVBoxLayout>
#include <algorithm>

#include "monitor/state/monitor_matrix.h"
#include "ui/look/captioned.h"
#include "ui/look/form_scroll.h"
#include "ui/look/screen_fit.h"
#include "ui/monitor/inserts_box.h"
#include "ui/monitor/level_bars.h"
#include "ui/monitor/loudness_panel.h"
#include "ui/monitor/monitor_route.h"
#include "ui/monitor/monitor_rows.h"
#include "ui/monitor/profile_compare.h"
#include "ui/monitor/speaker_pane.h"
#include "ui/player/upmix_sliders.h"

namespace brindlehum {
namespace {

constexpr QSize usualSize(760, 820);  // logical pixels, as are the next
constexpr QSize leastSize(720, 640);
constexpr int margin = 16;
constexpr int spacing = 10;

QLabel* quiet() {
    auto* label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setProperty("role", "secondary");
    return label;
}

}  // namespace

MonitorWindow::MonitorWindow(MonitorEngine& monitor, SettingsStore& settings, MainLoop& loop)
    : monitor_(monitor), settings_(settings), meter_(monitor, loop) {
    setObjectName("window");
    setAttribute(Qt::WA_StyledBackground);
    setWindowTitle(tr("Monitor"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(spacing);
    column->addWidget(route_ = new MonitorRoute(monitor, settings));
    column->addWidget(level_ = new MonitorLevel(monitor));
    column->addWidget(listen_ = new MonitorListen(monitor));
    auto* meters = new QHBoxLayout;
    meters->setSpacing(spacing);
    meters->addWidget(captioned(tr("Bus"), new LevelBars(meter_, LevelBars::Of::bus)));
    meters->addWidget(captioned(tr("Speakers"), new LevelBars(meter_, LevelBars::Of::speakers)));
    meters->addWidget(new LoudnessPanel(monitor.loudness()));
    column->addLayout(meters);
    auto* middle = new QHBoxLayout;
    middle->setSpacing(spacing);
    middle->addWidget(speakers_ = new SpeakerPane(monitor, meter_), 1);
    middle->addWidget(sliderPane_ = new FormScroll(sliders_ = new UpmixSliders(numbers_)), 1);
    column->addLayout(middle, 1);
    column->addWidget(trim_ = new MonitorTrim(monitor, settings));
    auto* last = new QHBoxLayout;
    last->addWidget(upmix_ = new MonitorUpmix(monitor), 1);
    last->addWidget(compare_ = new ProfileCompare(monitor, settings));
    column->addLayout(last);
    column->addWidget(new InsertsBox(monitor));
    column->addWidget(message_ = quiet());
    message_->setProperty("role", "warning");
    column->addWidget(format_ = quiet());
    addKeys();
    connect(&monitor, &MonitorEngine::changed, this, &MonitorWindow::refresh);
    connect(&meter_, &MonitorMeter::changed, this, &MonitorWindow::showFigures);
    connect(&monitor, &MonitorEngine::inputsChanged, route_, &MonitorRoute::refreshInputs);
    setMinimumSize(leastSize);
    resize(fittingSize(*this, usualSize));
    refresh();
}

void MonitorWindow::addKeys() {
    const auto key = [this](const QKeySequence& keys, auto change) {
        connect(new QShortcut(keys, this), &QShortcut::activated, this, [this, change] {
            MonitorState next = monitor_.state();
            change(next);
            monitor_.setState(next);
        });
    };
    key(QKeySequence("D"), [](MonitorState& s) { s.dim = !s.dim; });
    key(QKeySequence("R"), [](MonitorState& s) {
        if (!s.reference) { return; }
        s.volumeDB = s.reference->volumeDB;
        s.dim = false;
    });
    key(QKeySequence("M"), [](MonitorState& s) { s.mute = !s.mute; });
    for (size_t i = 0; i < allMonitorModes.size(); ++i) {
        key(QKeySequence(QString::number(i + 1)), [mode = allMonitorModes[i]](MonitorState& s) { s.mode = mode; });
    }
    for (const char* plus : {"+", "="}) {
        key(QKeySequence(plus),
            [](MonitorState& s) { s.volumeDB = std::min(s.volumeDB + 1, MonitorState::highestDB); });
    }
    key(QKeySequence("-"), [](MonitorState& s) { s.volumeDB = std::max(s.volumeDB - 1, MonitorState::lowestDB); });
    connect(new QShortcut(QKeySequence("X"), this), &QShortcut::activated, this, [this] { monitor_.switchProfiles(); });
    connect(new QShortcut(QKeySequence("Ctrl+W"), this), &QShortcut::activated, this, &QWidget::close);
}

void MonitorWindow::refresh() {
    route_->refresh();
    level_->refresh();
    listen_->refresh();
    speakers_->refresh();
    trim_->refresh();
    upmix_->refresh();
    compare_->refresh();
    sliderPane_->setVisible(settings_.value().expertMode && monitor_.upmixAvailable() &&
                            monitor_.state().upmix.enabled);
    if (!sliderPane_->isHidden()) { sliders_->refresh(); }
    QString message = QString::fromStdString(monitor_.message());
    if (message.isEmpty()) { message = whySilent(); }
    message_->setText(message);
    message_->setVisible(!message.isEmpty());
    showFigures();
    format_->setVisible(monitor_.running() || !monitor_.waiting());
}

// A solo of speakers that the mode leaves silent.
QString MonitorWindow::whySilent() const {
    const MonitorState& state = monitor_.state();
    if (state.solo.empty()) { return {}; }
    const auto unreached = MonitorMatrix::unreached(state, monitor_.profile());
    const bool silent = std::ranges::all_of(state.solo, [&](SpeakerID each) { return unreached.contains(each); });
    return silent ? tr("Nothing is sent to the soloed speakers in this mode.") : QString();
}

// What the stream is, and how it does.
void MonitorWindow::showFigures() {
    QString format = tr("Play your DAW into “Brindlehum Bus”, or choose another source, and start.");
    if (monitor_.running()) {
        const auto [latency, dropouts] = meter_.figures();
        format = tr("%1 in, %2 out at %3 kHz")
                     .arg(monitor_.inputChannels())
                     .arg(monitor_.deviceChannels())
                     .arg(monitor_.sampleRate() / 1000);
        if (latency > 0) { format += tr(", %1 ms latency").arg(1000 * latency, 0, 'f', 1); }
        const double upmix = 1000 * monitor_.addedLatency();
        if (upmix > 0) { format += tr(" (%1 ms of the upmix)").arg(upmix, 0, 'f', 1); }
        format += dropouts == 0 ? tr(", no drop-outs") : tr(", %1 drop-outs").arg(dropouts);
    }
    if (format != format_->text()) { format_->setText(format); }
}

void MonitorWindow::showEvent(QShowEvent* /*event*/) {
    meter_.show(true);
}

void MonitorWindow::hideEvent(QHideEvent* /*event*/) {
    meter_.show(false);
}

}  // namespace brindlehum
