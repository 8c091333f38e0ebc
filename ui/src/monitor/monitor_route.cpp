#include "ui/monitor/monitor_route.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>

#include "ui/look/captioned.h"
#include "ui/look/icons.h"
#include "ui/look/menu_button.h"
#include "ui/look/utf8_text.h"

namespace brindlehum {
namespace {

// Logical pixels.
constexpr int longestSource = 220;
constexpr int longestOutput = 160;

QString described(const AudioInputDevice& input) {
    return QCoreApplication::translate("MonitorRoute", "%1  (%2 in)")
        .arg(QString::fromStdString(input.name), QString::number(input.inputChannels));
}

}  // namespace

MonitorRoute::MonitorRoute(MonitorEngine& monitor, SettingsStore& settings, QWidget* parent)
    : QWidget(parent), monitor_(monitor), settings_(settings) {
    source_ = new MenuButton(
        tr("Source"), tr("Where your DAW plays its bus, for example Brindlehum Bus"), [this](QMenu& menu) {
            addChoice(menu, tr("Choose…"), !monitor_.sourceUID(), [this] { monitor_.setSourceUID(std::nullopt); });
            menu.addSeparator();
            for (const AudioInputDevice& input : monitor_.inputs()) {
                addChoice(menu, described(input), monitor_.sourceUID() == input.uid,
                          [this, uid = input.uid] { monitor_.setSourceUID(uid); });
            }
        });
    bus_ = new MenuButton(tr("Bus"), tr("The order of the bus's channels"), [this](QMenu& menu) {
        for (const MonitorSource source : allMonitorSources) {
            addChoice(menu, textOf(displayName(source)), monitor_.state().source == source, [this, source] {
                MonitorState next = monitor_.state();
                next.source = source;
                monitor_.setState(next);
            });
        }
    });
    output_ = new MenuButton(tr("Output"), tr("The speakers or headphones that it is heard on"), [this](QMenu& menu) {
        for (const OutputProfile& profile : settings_.value().profiles) {
            addChoice(menu, QString::fromStdString(profile.name), monitor_.profile().id == profile.id,
                      [this, id = profile.id] { monitor_.setProfileID(id); });
        }
    });
    start_ = new QPushButton;
    start_->setProperty("role", "prominent");
    start_->setDefault(true);
    connect(start_, &QPushButton::clicked, this, [this] {
        const bool stops = monitor_.running() || monitor_.waiting();
        stops ? monitor_.stop() : monitor_.start();
    });
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(12);
    row->addWidget(captioned(tr("Source"), source_));
    row->addWidget(captioned(tr("Bus"), bus_));
    row->addWidget(captioned(tr("Output"), output_));
    row->addStretch(1);
    row->addWidget(start_, 0, Qt::AlignBottom);
    refreshInputs();
}

QString MonitorRoute::sourceText() const {
    if (!monitor_.sourceUID()) { return tr("Choose…"); }
    for (const AudioInputDevice& input : inputs_) {
        if (input.uid == monitor_.sourceUID()) { return described(input); }
    }
    return tr("%1  (not there)").arg(QString::fromStdString(*monitor_.sourceUID()));
}

void MonitorRoute::refreshInputs() {
    inputs_ = monitor_.inputs();
    refresh();
}

void MonitorRoute::refresh() {
    const auto shortened = [this](const QString& text, int longest) {
        return fontMetrics().elidedText(text, Qt::ElideMiddle, longest);
    };
    source_->setChoice(shortened(sourceText(), longestSource));
    bus_->setChoice(textOf(displayName(monitor_.state().source)));
    output_->setChoice(shortened(QString::fromStdString(monitor_.profile().name), longestOutput));
    const bool stops = monitor_.running() || monitor_.waiting();
    start_->setText(stops ? tr("Stop") : tr("Start"));
    start_->setIcon(symbol(stops ? "stop" : "play", SymbolRole::onAccent));
}

}  // namespace brindlehum
