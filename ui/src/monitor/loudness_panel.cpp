// Shows the readings as they come.
#include "ui/monitor/loudness_panel.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <cmath>

#include "ui/look/tabular_font.h"

namespace brindlehum {
namespace {

QString lufs(double value) {
    return value <= LoudnessResult::floor ? QString("–") : QString::asprintf("%.1f", value);
}

QString clock(double seconds) {
    const int whole = int(std::floor(seconds + 1e-6));
    return QString::asprintf("%d:%02d:%02d", whole / 3600, whole / 60 % 60, whole % 60);
}

}  // namespace

LoudnessPanel::LoudnessPanel(BusLoudness& loudness, QWidget* parent) : QWidget(parent), loudness_(loudness) {
    setToolTip(
        tr("Loudness of the bus as it arrives, in LUFS (ITU-R BS.1770): of the last 3 s, and gated since the reset"));
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(2);
    const auto row = [&](int at, const QString& name, double points) {
        auto* caption = new QLabel(name);
        caption->setProperty("role", "secondary");
        auto* value = new QLabel;
        value->setFont(tabularFont(points));
        value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        value->setMinimumWidth(QFontMetrics(value->font()).horizontalAdvance("-70.0") + 4);
        value->setAccessibleName(tr("%1 loudness").arg(name));
        grid->addWidget(caption, at, 0);
        grid->addWidget(value, at, 1);
        return value;
    };
    auto* title = new QLabel(tr("Loudness, LUFS"));
    title->setProperty("role", "secondary");
    grid->addWidget(title, 0, 0, 1, 2);
    shortTerm_ = row(1, tr("Short"), 13);
    integrated_ = row(2, tr("Integrated"), 13);
    time_ = new QLabel;
    time_->setFont(tabularFont(9));
    time_->setProperty("role", "secondary");
    auto* reset = new QPushButton(tr("Reset"));
    reset->setObjectName("resetLoudness");
    reset->setToolTip(tr("Begin the integrated loudness anew"));
    connect(reset, &QPushButton::clicked, this, [this] { loudness_.reset(); });
    grid->addWidget(time_, 3, 0);
    grid->addWidget(reset, 3, 1, Qt::AlignRight);
    grid->setRowStretch(4, 1);
    connect(&loudness, &BusLoudness::changed, this, [this] {
        if (isVisible()) { refresh(); }
    });
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    refresh();
}

void LoudnessPanel::showEvent(QShowEvent* /*event*/) {
    refresh();
}

void LoudnessPanel::refresh() {
    const LiveLoudness::Reading& now = loudness_.reading();
    shortTerm_->setText(lufs(now.shortTerm));
    integrated_->setText(lufs(now.integrated));
    time_->setText(clock(now.seconds));
}

}  // namespace brindlehum
