// Puts the rows together, and follows the monitor.
#include "ui/monitor/monitor_window.h"

#include <QLabel>
#include <QShortcut>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/look/screen_fit.h"
#include "ui/monitor/bus_meter.h"
#include "ui/monitor/inserts_box.h"
#include "ui/monitor/monitor_route.h"
#include "ui/monitor/monitor_rows.h"
#include "ui/monitor/speaker_map.h"

namespace brindlehum {
namespace {

constexpr QSize usualSize(760, 700);  // logical pixels, as are the next
constexpr QSize leastSize(560, 520);
constexpr int margin = 16;
constexpr int spacing = 14;

QLabel* quiet() {
    auto* label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setProperty("role", "secondary");
    return label;
}

}  // namespace

MonitorWindow::MonitorWindow(MonitorEngine& monitor, SettingsStore& settings, MainLoop& loop)
    : monitor_(monitor), meter_(monitor, loop) {
    setObjectName("window");
    setAttribute(Qt::WA_StyledBackground);
    setWindowTitle("Monitor");
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(spacing);
    column->addWidget(route_ = new MonitorRoute(monitor, settings));
    column->addWidget(level_ = new MonitorLevel(monitor));
    column->addWidget(listen_ = new MonitorListen(monitor));
    column->addWidget(new BusMeter(meter_));
    column->addWidget(new SpeakerMap(monitor, meter_), 1);
    column->addWidget(trim_ = new MonitorTrim(monitor, settings));
    column->addWidget(upmix_ = new MonitorUpmix(monitor));
    column->addWidget(new InsertsBox(monitor));
    column->addWidget(message_ = quiet());
    message_->setProperty("role", "warning");
    column->addWidget(format_ = quiet());
    addKeys();
    connect(&monitor, &MonitorEngine::changed, this, &MonitorWindow::refresh);
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
    key(QKeySequence("M"), [](MonitorState& s) { s.mute = !s.mute; });
    for (size_t i = 0; i < allMonitorModes.size(); ++i) {
        key(QKeySequence(QString::number(i + 1)), [mode = allMonitorModes[i]](MonitorState& s) { s.mode = mode; });
    }
    for (const char* plus : {"+", "="}) {
        key(QKeySequence(plus),
            [](MonitorState& s) { s.volumeDB = std::min(s.volumeDB + 1, MonitorState::highestDB); });
    }
    key(QKeySequence("-"), [](MonitorState& s) { s.volumeDB = std::max(s.volumeDB - 1, MonitorState::lowestDB); });
    connect(new QShortcut(QKeySequence("Ctrl+W"), this), &QShortcut::activated, this, &QWidget::close);
}

void MonitorWindow::refresh() {
    route_->refresh();
    level_->refresh();
    listen_->refresh();
    trim_->refresh();
    upmix_->refresh();
    const QString message = QString::fromStdString(monitor_.message());
    message_->setText(message);
    message_->setVisible(!message.isEmpty());
    QString format = "Play your DAW into “Brindlehum Bus”, or choose another source, and start.";
    if (monitor_.running()) {
        format = QString("%1 in, %2 out at %3 kHz")
                     .arg(monitor_.inputChannels())
                     .arg(monitor_.deviceChannels())
                     .arg(monitor_.sampleRate() / 1000);
        const double latency = 1000 * monitor_.addedLatency();
        format += latency > 0 ? QString(". The upmix is heard %1 ms later.").arg(latency, 0, 'f', 0) : QString(".");
    }
    format_->setText(format);
    format_->setVisible(monitor_.running() || message.isEmpty());
}

void MonitorWindow::showEvent(QShowEvent* /*event*/) {
    meter_.show(true);
}

void MonitorWindow::hideEvent(QHideEvent* /*event*/) {
    meter_.show(false);
}

}  // namespace brindlehum
