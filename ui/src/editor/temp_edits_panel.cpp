// The editor's right side.
#include "ui/editor/temp_edits_panel.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <span>

#include "edits/temp_edit_planner.h"
#include "edits/temp_edit_renderer.h"
#include "ui/editor/plan_card.h"
#include "ui/look/plain_tool_tip.h"
#include "ui/look/setting_action.h"

namespace brindlehum {
namespace {

constexpr std::array lengths = {15.0, 30.0, 60.0, 120.0};  // seconds
constexpr double extendedLength = 180;                     // seconds
constexpr size_t mostLoops = 6;                            // candidates that are listed

// A row of a list that is pressed as a whole; its text gives way to the width.
class RowButton : public QPushButton {
public:
    explicit RowButton(const QString& text) : text_(text) {
        setProperty("role", "row");
        setAccessibleName(text);
        setToolTip(plainToolTip(QCoreApplication::translate("TempEditsPanel", "%1. End the loop here").arg(text)));
        setFocusPolicy(Qt::TabFocus);
        setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    }

protected:
    void resizeEvent(QResizeEvent* event) override {
        QPushButton::resizeEvent(event);
        setText(fontMetrics().elidedText(text_, Qt::ElideRight, width() - padding).replace('&', "&&"));
    }

private:
    static constexpr int padding = 16;  // logical pixels
    QString text_;
};

QLabel* caption(const QString& text) {
    auto* label = new QLabel(text);
    label->setProperty("role", "caption");
    return label;
}

void clear(QLayout& layout) {
    while (QLayoutItem* item = layout.takeAt(0)) {
        if (item->widget()) { item->widget()->deleteLater(); }
        delete item;
    }
}

}  // namespace

TempEditsPanel::TempEditsPanel(MusicModel& music, EditorTransport& transport, SettingsStore& settings,
                               std::function<void(const std::filesystem::path&)> reveal, QWidget* generation,
                               QWidget* parent)
    : QWidget(parent), music_(music), transport_(transport), settings_(settings), reveal_(std::move(reveal)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(12, 8, 12, 12);
    column->setSpacing(8);
    auto* title = new QLabel(tr("Temp Edits"));
    title->setProperty("role", "headline");
    column->addWidget(title);
    column->addWidget(state_ = new QLabel);
    state_->setProperty("role", "secondary");
    state_->setWordWrap(true);
    body_ = new QWidget;
    auto* rows = new QVBoxLayout(body_);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(8);
    makePins(*rows);
    makeOptions(*rows);
    makeResults(*rows);
    column->addWidget(body_, 1);
    column->addStretch(0);
    column->addWidget(generation);
    connect(&music, &MusicModel::changed, this, &TempEditsPanel::refresh);
    connect(&transport, &EditorTransport::changed, this, &TempEditsPanel::refreshCards);
    refresh();
}

void TempEditsPanel::makePins(QVBoxLayout& column) {
    auto* row = new QHBoxLayout;
    row->addWidget(pins_ = new QLabel, 1);
    pins_->setWordWrap(true);
    row->addWidget(reset_ = new QPushButton(tr("Reset pins")));
    reset_->setProperty("role", "small");
    reset_->setToolTip(tr("Drag the flags in the ruler to move pins; they snap to bar lines"));
    connect(reset_, &QPushButton::clicked, this, [this] { music_.resetPins(); });
    column.addLayout(row);
}

void TempEditsPanel::setTarget(double seconds, bool on) {
    TempEditOptions options = music_.options();
    std::erase(options.targets, seconds);
    if (on) { options.targets.push_back(seconds); }
    std::ranges::sort(options.targets);
    music_.setOptions(options);
}

void TempEditsPanel::makeOptions(QVBoxLayout& column) {
    auto* row = new QHBoxLayout;
    row->setSpacing(4);
    for (const double seconds : lengths) {
        auto* button = new QPushButton(QString::fromStdString(TempEditPlanner::label(seconds)));
        button->setCheckable(true);
        button->setProperty("role", "small");
        connect(button, &QPushButton::clicked, this, [this, seconds](bool on) { setTarget(seconds, on); });
        row->addWidget(button);
        lengths_.push_back(button);
    }
    row->addStretch();
    column.addLayout(row);
    extended_ = new QCheckBox(tr("%1 extended").arg(QString::fromStdString(TempEditPlanner::label(extendedLength))));
    connect(extended_, &QCheckBox::clicked, this, [this](bool on) {
        TempEditOptions options = music_.options();
        options.extended = on ? std::optional(extendedLength) : std::nullopt;
        music_.setOptions(options);
    });
    column.addWidget(extended_);
    exact_ = new QCheckBox(tr("Exact lengths (fade the tail at the target)"));
    connect(exact_, &QCheckBox::clicked, this, [this](bool on) {
        TempEditOptions options = music_.options();
        options.exactLength = on;
        music_.setOptions(options);
    });
    column.addWidget(exact_);
    column.addWidget(makeSetting(tr("Write edits beside the source"), settings_, &AppSettings::tempEditsBesideSource));
    auto* fade = new QHBoxLayout;
    fade->addWidget(new QLabel(tr("Splice crossfade")));
    fade->addWidget(crossfade_ = new QSpinBox);
    crossfade_->setRange(5, 120);
    crossfade_->setSingleStep(5);
    crossfade_->setSuffix(" ms");
    crossfade_->setAccessibleName(tr("Splice crossfade"));
    connect(crossfade_, &QSpinBox::valueChanged, this, [this](int ms) {
        TempEditOptions options = music_.options();
        options.crossfadeMs = ms;
        music_.setOptions(options);
    });
    fade->addStretch();
    column.addLayout(fade);
}

void TempEditsPanel::makeResults(QVBoxLayout& column) {
    auto* list = new QWidget;
    auto* inner = new QVBoxLayout(list);
    inner->setContentsMargins(0, 0, 4, 0);
    inner->setSpacing(6);
    inner->addLayout(cards_ = new QVBoxLayout);
    cards_->setSpacing(6);
    inner->addWidget(loopsTitle_ = caption(tr("Loop candidates")));
    inner->addLayout(loops_ = new QVBoxLayout);
    loops_->setSpacing(2);
    inner->addStretch();
    auto* scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidget(list);
    column.addWidget(scroll, 1);
    column.addWidget(make_ = new QPushButton(tr("Make Temp Edits")));
    make_->setProperty("role", "prominent");
    make_->setToolTip(tr("Writes every edit below into a folder next to the source, with an edit-notes sheet"));
    connect(make_, &QPushButton::clicked, this,
            [this] { music_.writing() ? music_.cancelTempEdits() : music_.makeTempEdits(); });
    column.addWidget(progress_ = new QProgressBar);
    progress_->setTextVisible(false);
    progress_->setRange(0, 100);
    auto* row = new QHBoxLayout;
    row->addWidget(written_ = new QLabel, 1);
    row->addWidget(show_ = new QPushButton(tr("Reveal")));
    show_->setProperty("role", "small");
    connect(show_, &QPushButton::clicked, this, [this] { reveal_(music_.lastExport()->folder); });
    column.addLayout(row);
}

QString TempEditsPanel::pinsText() const {
    const Pins& pins = *music_.pins();
    if (pins.loopFile) { return tr("Seamless loop"); }
    return tr("Intro to b%1 · Loop b%2–%3 · Ending b%4")
        .arg(pins.introEnd + 1)
        .arg(pins.loopStart + 1)
        .arg(pins.loopEnd)
        .arg(pins.endingStart + 1);
}

void TempEditsPanel::refresh() {
    const bool hasPlans = music_.pins().has_value() && !music_.isStale();
    body_->setVisible(hasPlans);
    state_->setVisible(!hasPlans);
    state_->setText(music_.isAnalyzing() || music_.isStale() ? tr("Finding the sections…")
                    : music_.hasNoPulse()
                        ? tr("No steady pulse found; set the tempo by hand in the tempo menu to plan edits.")
                        : "");
    if (!hasPlans) { return; }
    pins_->setText(pinsText());
    reset_->setEnabled(*music_.pins() != music_.analysis()->structure.pins);
    const TempEditOptions& options = music_.options();
    for (size_t i = 0; i < lengths_.size(); ++i) {
        lengths_[i]->setChecked(std::ranges::find(options.targets, lengths[i]) != options.targets.end());
    }
    extended_->setChecked(options.extended.has_value());
    exact_->setChecked(options.exactLength);
    const QSignalBlocker quiet(crossfade_);
    crossfade_->setValue(int(options.crossfadeMs));
    refreshCards();
    refreshLoops();
    const auto& writing = music_.writing();
    make_->setText(writing ? tr("Cancel") : tr("Make Temp Edits"));
    make_->setEnabled(!music_.plans().empty());
    progress_->setVisible(writing.has_value());
    progress_->setValue(int(writing.value_or(0) * 100));
    const auto& last = music_.lastExport();
    written_->setVisible(last && !writing);
    show_->setVisible(last && !writing);
    if (last) { written_->setText(tr("✓ %1 files").arg(last->files.size())); }
}

void TempEditsPanel::refreshCards() {
    std::vector<std::string> wanted;
    for (const EditPlan& plan : music_.plans()) { wanted.push_back(plan.name + plan.map); }
    wanted.push_back(transport_.auditioned().value_or(""));
    if (wanted == shownCards_) { return; }
    shownCards_ = wanted;
    clear(*cards_);
    if (music_.plans().empty()) { return; }
    const double rate = music_.bars().sampleRate;
    for (const EditPlan& plan : music_.plans()) {
        auto* card = new PlanCard(plan, double(TempEditRenderer::length(plan, rate)) / rate,
                                  transport_.auditioned() == plan.name);
        card->onAudition = [this, plan] {
            transport_.auditioned() == plan.name ? transport_.stop() : transport_.audition(plan);
        };
        cards_->addWidget(card);
    }
}

void TempEditsPanel::refreshLoops() {
    std::span<const LoopCandidate> candidates = music_.analysis()->structure.loopCandidates;
    candidates = candidates.first(std::min(candidates.size(), mostLoops));
    std::vector<QString> texts;
    for (const LoopCandidate& each : candidates) {
        QString reasons;
        for (const auto& reason : each.reasons) {
            reasons += (reasons.isEmpty() ? "" : ", ") + QString::fromStdString(reason);
        }
        texts.push_back(
            tr("b%1  %2%  %3")
                .arg(QString::number(each.boundary + 1), QString::asprintf("%.0f", each.score * 100), reasons));
    }
    if (texts == shownLoops_) { return; }
    shownLoops_ = texts;
    clear(*loops_);
    loopsTitle_->setVisible(!candidates.empty());
    for (size_t i = 0; i < candidates.size(); ++i) {
        auto* row = new RowButton(texts[i]);
        connect(row, &QPushButton::clicked, this, [this, boundary = candidates[i].boundary] {
            music_.movePin(PinKind::loopEnd, music_.frame(boundary));
        });
        loops_->addWidget(row);
    }
}

}  // namespace brindlehum
