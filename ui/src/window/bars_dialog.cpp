// Keeps the strip, the fields and the analysis of one piece in step.
#include "ui/window/bars_dialog.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "base/number_text.h"
#include "dsp/signal.h"
#include "mix/player/loaded_sound.h"
#include "mix/player/transport.h"
#include "ui/look/elided_label.h"
#include "ui/look/path_text.h"
#include "ui/look/screen_fit.h"
#include "ui/window/bars_form.h"
#include "ui/window/bars_strip.h"

namespace brindlehum {
namespace {

constexpr QSize usualSize(1080, 480);  // logical pixels

QString statusOf(const MusicAnalysis& analysis, const GivenBars& given) {
    const MusicGrid& grid = analysis.grid;
    const int beats = grid.beatsPerBar;
    const QString bpm = QString::fromStdString(fixed(grid.bpm, 2));
    const QString meter =
        beats == 1 ? QCoreApplication::translate("BarsDialog", "%1 BPM · 1 beat a bar").arg(bpm)
                   : QCoreApplication::translate("BarsDialog", "%1 BPM · %2 beats a bar").arg(bpm).arg(beats);
    if (given.downbeat) { return meter + " · " + QCoreApplication::translate("BarsDialog", "bar lines set by hand"); }
    const QString sure = QString::fromStdString(fixed(100 * grid.downbeatConfidence, 0));
    const QString lines =
        grid.barLinesUncertain()
            ? QCoreApplication::translate("BarsDialog", "bar lines uncertain (%1 % sure): click where a bar starts")
            : QCoreApplication::translate("BarsDialog", "bar lines %1 % sure");
    return meter + " · " + lines.arg(sure);
}

}  // namespace

BarsDialog::BarsDialog(std::unique_ptr<PieceBars> piece, const LoadedSound& sound, Transport& transport,
                       QWidget* parent)
    : QDialog(parent), piece_(std::move(piece)), sound_(sound), transport_(transport) {
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(tr("Set Bars"));
    layOut();
    connectParts();
    form_->setGiven(piece_->given());
    refresh();
    followPlayhead();
    resize(fittingSize(*this, usualSize));
    strip_->setFocus();
}

void BarsDialog::layOut() {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(20, 18, 20, 16);
    column->setSpacing(8);
    auto* name = new ElidedLabel(Qt::ElideMiddle);
    name->setFullText(pathText(piece_->file().filename()));
    name->setProperty("role", "title");
    column->addWidget(name);
    column->addWidget(status_ = new ElidedLabel(Qt::ElideRight));
    column->addWidget(strip_ = new BarsStrip, 1);
    column->addWidget(scroll_ = new QScrollBar(Qt::Horizontal));
    scroll_->setAccessibleName(tr("Part of the piece in view"));
    auto* hint = new ElidedLabel(Qt::ElideRight);
    hint->setFullText(
        tr("Click where a bar starts. Left and Right move it by a beat, Space plays, the wheel scrolls, Ctrl+wheel "
           "zooms."));
    hint->setProperty("role", "secondary");
    column->addWidget(hint);
    column->addWidget(form_ = new BarsForm);
    column->addSpacing(4);
    column->addWidget(makeButtons());
}

QWidget* BarsDialog::makeButtons() {
    auto* buttons = new QDialogButtonBox;
    asFound_ = buttons->addButton(tr("As Found"), QDialogButtonBox::ResetRole);
    auto* cancel = buttons->addButton(tr("Cancel"), QDialogButtonBox::RejectRole);
    save_ = buttons->addButton(tr("Save"), QDialogButtonBox::AcceptRole);
    edits_ = buttons->addButton(tr("Save and Make Temp Edits"), QDialogButtonBox::AcceptRole);
    edits_->setProperty("role", "prominent");
    for (auto* button : {asFound_, cancel, save_, edits_}) { button->setAutoDefault(false); }
    connect(asFound_, &QPushButton::clicked, this, [this] {
        typingProblem_.clear();
        piece_->set({});
        form_->setGiven({});
        refresh();
    });
    connect(cancel, &QPushButton::clicked, this, &QDialog::close);
    connect(save_, &QPushButton::clicked, this, [this] {
        piece_->store();
        close();
    });
    connect(edits_, &QPushButton::clicked, this, [this] {
        piece_->store();
        Q_EMIT editsAsked(piece_->file());
        close();
    });
    return buttons;
}

void BarsDialog::connectParts() {
    connect(piece_.get(), &PieceBars::changed, this, &BarsDialog::refresh);
    connect(form_, &BarsForm::edited, this, [this](const GivenBars& given) {
        typingProblem_.clear();
        piece_->set(given);
        refresh();
    });
    connect(form_, &BarsForm::refused, this, [this](const QString& problem) {
        typingProblem_ = problem;
        refresh();
    });
    connect(strip_, &BarsStrip::chosen, this, [this](double seconds) {
        GivenBars given = piece_->given();
        given.downbeat = seconds;
        form_->setGiven(given);
        typingProblem_.clear();
        piece_->set(given);
        refresh();
    });
    connect(strip_, &BarsStrip::viewChanged, this, &BarsDialog::followScroll);
    connect(scroll_, &QScrollBar::valueChanged, this, [this](int value) {
        strip_->setVisibleRange(scrolled(strip_->visibleRange(), value - strip_->visibleRange().first));
    });
    connect(strip_, &BarsStrip::playAsked, this, [this] {
        if (isLoaded()) { transport_.togglePlay(); }
    });
    connect(&transport_.playhead(), &PlayheadModel::frameChanged, this, &BarsDialog::followPlayhead);
    connect(&sound_, &LoadedSound::changed, this, &BarsDialog::followPlayhead);
}

// Return in a field only takes its value; the button box would make it save.
void BarsDialog::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) { return event->accept(); }
    QDialog::keyPressEvent(event);
}

void BarsDialog::refresh() {
    const MusicAnalysis* analysis = piece_->analysis();
    AnalysisPicture::Content content;
    if (const WorkingSignal* signal = piece_->signal()) {
        content.mono = *signal;
        content.monoRate = Signal::analysisRate;
    }
    content.analysis = analysis;
    // Of the loudest channel, which spares a look at all samples with each repaint.
    if (analysis) { content.peak = float(std::pow(10, analysis->loudness.samplePeak / 20)); }
    const bool first = strip_->visibleRange().total == 0;
    strip_->setContent(content);
    strip_->setDownbeat(piece_->given().downbeat);
    if (first && piece_->given().downbeat) {
        strip_->setVisibleRange(revealing(strip_->visibleRange(), *piece_->given().downbeat * Signal::analysisRate));
    }
    form_->setFound(analysis && !piece_->isAnalysing() ? &analysis->grid : nullptr);
    asFound_->setEnabled(piece_->given().any() || !typingProblem_.isEmpty());
    save_->setEnabled(typingProblem_.isEmpty());
    const bool ready = analysis && piece_->problem().empty();
    edits_->setEnabled(ready && typingProblem_.isEmpty());
    if (!typingProblem_.isEmpty()) { return showStatus(typingProblem_, true); }
    if (piece_->isAnalysing()) { return showStatus(tr("Analysing…"), false); }
    if (!ready) { return showStatus(QString::fromStdString(piece_->problem()), true); }
    showStatus(statusOf(*analysis, piece_->given()), !piece_->given().downbeat && analysis->grid.barLinesUncertain());
}

void BarsDialog::showStatus(const QString& text, bool isWarning) {
    status_->setProperty("role", isWarning ? "warning" : "secondary");
    status_->style()->unpolish(status_);
    status_->style()->polish(status_);
    status_->setFullText(text);
}

bool BarsDialog::isLoaded() const {
    const auto& info = sound_.info();
    return info && info->url == piece_->file() && info->sampleRate > 0;
}

void BarsDialog::followPlayhead() {
    std::optional<double> seconds;
    if (isLoaded()) { seconds = double(transport_.currentFrame()) / sound_.info()->sampleRate; }
    strip_->setPlayhead(seconds);
    form_->setPlayhead(seconds);
    if (seconds && transport_.isPlaying()) {
        strip_->setVisibleRange(followed(strip_->visibleRange(), *seconds * Signal::analysisRate));
    }
}

void BarsDialog::followScroll() {
    const VisibleRange& visible = strip_->visibleRange();
    const QSignalBlocker quiet(scroll_);
    scroll_->setRange(0, int(double(visible.total) - visible.length));
    scroll_->setPageStep(std::max(int(visible.length), 1));
    scroll_->setSingleStep(std::max(scroll_->pageStep() / 10, 1));
    scroll_->setValue(int(visible.first));
    scroll_->setEnabled(!visible.isAll());
}

}  // namespace brindlehum
