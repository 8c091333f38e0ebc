// Reads and shows the values that a user gives about bars.
#include "ui/window/bars_form.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QLocale>
#include <QPushButton>
#include <cmath>

#include "base/time_text.h"
#include "ui/look/caption_label.h"

namespace brindlehum {
namespace {

QLineEdit* addField(QHBoxLayout& row, const QString& caption, int letters) {
    auto* field = new QLineEdit;
    field->setFixedWidth(field->fontMetrics().averageCharWidth() * letters + 24);
    row.addWidget(new CaptionLabel(caption, *field));
    row.addWidget(field);
    row.addSpacing(12);
    QString name = caption;
    field->setAccessibleName(name.remove('&'));
    return field;
}

// Either decimal sign.
std::optional<double> numberOf(const QString& text) {
    bool isNumber = false;
    const double value = QLocale::c().toDouble(text.trimmed().replace(',', '.'), &isNumber);
    return isNumber && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

QString shownNumber(double value) {
    return QLocale::c().toString(value, 'g', 8);
}

}  // namespace

BarsForm::BarsForm(QWidget* parent) : QWidget(parent) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    tempo_ = addField(*row, tr("&Tempo"), 8);
    beats_ = addField(*row, tr("&Beats a bar"), 4);
    start_ = addField(*row, tr("A bar starts &at"), 10);
    row->addWidget(atPlayhead_ = new QPushButton(tr("At &Playhead")));
    row->addStretch(1);
    atPlayhead_->setAutoDefault(false);
    for (auto* field : {tempo_, beats_, start_}) { connect(field, &QLineEdit::editingFinished, this, &BarsForm::read); }
    connect(atPlayhead_, &QPushButton::clicked, this, [this] {
        if (!playhead_) { return; }
        start_->setText(QString::fromStdString(timeText(*playhead_)));
        read();
    });
    setFound(nullptr);
    setPlayhead(std::nullopt);
}

void BarsForm::setGiven(const GivenBars& given) {
    tempo_->setText(given.bpm ? shownNumber(*given.bpm) : QString());
    beats_->setText(given.beatsPerBar ? QString::number(*given.beatsPerBar) : QString());
    start_->setText(given.downbeat ? QString::fromStdString(timeText(*given.downbeat)) : QString());
}

void BarsForm::setFound(const MusicGrid* grid) {
    tempo_->setPlaceholderText(grid ? QLocale::c().toString(grid->bpm, 'f', 2) : "BPM");
    beats_->setPlaceholderText(grid ? QString::number(grid->beatsPerBar) : QString());
    const bool known = grid && !grid->downbeats.empty();
    start_->setPlaceholderText(known ? QString::fromStdString(timeText(grid->downbeats.front())) : tr("m:ss.mmm"));
}

void BarsForm::setPlayhead(std::optional<double> seconds) {
    playhead_ = seconds;
    atPlayhead_->setEnabled(seconds.has_value());
    atPlayhead_->setToolTip(seconds ? tr("A bar starts where the player's playhead is")
                                    : tr("Load this piece into the player to take its playhead"));
}

std::optional<double> BarsForm::secondsOf(const QString& text) {
    double seconds = 0;
    const QStringList parts = text.split(':');
    if (parts.size() > 3) { return std::nullopt; }
    for (const QString& part : parts) {
        const auto number = numberOf(part);
        if (!number || *number < 0) { return std::nullopt; }
        seconds = seconds * 60 + *number;
    }
    return seconds;
}

void BarsForm::read() {
    using namespace GivenBarsRange;
    GivenBars given;
    if (!tempo_->text().trimmed().isEmpty()) {
        given.bpm = numberOf(tempo_->text());
        if (!given.bpm || *given.bpm < slowestBpm || *given.bpm > fastestBpm) {
            return refused(tr("The tempo is a number from %1 to %2 BPM").arg(slowestBpm).arg(fastestBpm));
        }
    }
    if (!beats_->text().trimmed().isEmpty()) {
        const auto beats = numberOf(beats_->text());
        if (!beats || *beats < 1 || *beats > mostBeatsPerBar || *beats != std::floor(*beats)) {
            return refused(tr("A bar has 1 to %1 beats").arg(mostBeatsPerBar));
        }
        given.beatsPerBar = int(*beats);
    }
    if (!start_->text().trimmed().isEmpty()) {
        given.downbeat = secondsOf(start_->text());
        if (!given.downbeat || *given.downbeat > latestDownbeat) {
            return refused(tr("A bar starts at a time such as 0:12.5"));
        }
    }
    Q_EMIT edited(given);
}

}  // namespace brindlehum
