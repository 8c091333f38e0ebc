// The editor's first row.
#include "ui/editor/editor_header.h"

#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QMenu>
#include <QToolButton>
#include <cmath>

#include "ui/editor/key_name.h"
#include "ui/look/elided_label.h"
#include "ui/look/menu_button.h"
#include "ui/look/path_text.h"
#include "ui/look/plain_tool_tip.h"

namespace brindlehum {
namespace {

QLabel* quiet(const char* role) {
    auto* label = new QLabel;
    label->setProperty("role", role);
    return label;
}

}  // namespace

EditorHeader::EditorHeader(DocumentModel& document, MusicModel& music, EditorTransport& transport,
                           SettingsStore& settings, QWidget* parent)
    : QWidget(parent), document_(document), music_(music), transport_(transport), settings_(settings) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(12, 8, 12, 4);
    row->setSpacing(10);
    row->addWidget(name_ = new ElidedLabel, 1);
    name_->setProperty("role", "title");
    row->addWidget(unsaved_ = quiet("warning"));
    unsaved_->setText(tr("Unsaved edits"));
    row->addWidget(state_ = quiet("secondary"));
    row->addWidget(tempo_ = new MenuButton(tr("Tempo"), tr("Tempo"), [this](QMenu& menu) { fillTempo(menu); }));
    row->addWidget(twin_ = quiet("warning"));
    twin_->setText("⚠");
    row->addWidget(meter_ = new MenuButton(tr("Meter"), tr("Beats a bar, and where a bar starts"),
                                           [this](QMenu& menu) { fillMeter(menu); }));
    row->addWidget(uncertain_ = quiet("warning"));
    uncertain_->setText(tr("Bar lines uncertain"));
    uncertain_->setToolTip(tr("Turn on the click and listen. Right-click the waveform where a bar starts to say so."));
    row->addWidget(click_ = new QToolButton);
    click_->setText(tr("Click"));
    click_->setCheckable(true);
    click_->setAccessibleName(tr("Click"));
    click_->setToolTip(tr("Click on the grid while playing. If the click sits, the tempo is right."));
    connect(click_, &QToolButton::clicked, this, [this](bool on) { transport_.setClick(on); });
    row->addWidget(key_ = quiet("secondary"));
    row->addWidget(loudness_ = quiet("secondary"));
    row->addWidget(expert_ = quiet("secondary"));
    expert_->setText(tr("Expert mode"));
    connect(&document, &DocumentModel::changed, this, &EditorHeader::refresh);
    connect(&music, &MusicModel::changed, this, &EditorHeader::refresh);
    connect(&transport, &EditorTransport::changed, this, &EditorHeader::refresh);
    connect(&settings, &SettingsStore::changed, this, &EditorHeader::refresh);
    refresh();
}

QString EditorHeader::loudnessText() const {
    const LoudnessResult& loudness = music_.analysis()->loudness;
    QString text = QString::asprintf("%.1f LUFS", loudness.integrated);
    if (settings_.value().expertMode) {
        text += QString::asprintf(" · ST max %.1f · TP %.1f dBTP", loudness.shortTermMax, loudness.truePeak);
    }
    return text;
}

void EditorHeader::refresh() {
    const auto& analysis = music_.analysis();
    const auto& doc = document_.doc();
    const auto& loading = document_.loading();
    setVisible(doc || loading);
    if (loading) {
        for (QWidget* each : findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) { each->setVisible(each == name_); }
        return name_->setFullText(pathText(loading->url.filename()));
    }
    if (!doc) { return; }
    name_->setFullText(pathText(doc->url.filename()));
    unsaved_->setVisible(document_.isDirty());
    state_->setVisible(music_.isAnalyzing() || music_.hasNoPulse());
    state_->setText(music_.isAnalyzing() ? tr("Finding the bars…") : tr("No steady pulse"));
    state_->setToolTip(music_.isAnalyzing() ? QString()
                                            : tr("Set the tempo by hand in the tempo menu, if there is one"));
    tempo_->setVisible(analysis.has_value() || music_.hasNoPulse());
    for (QWidget* each : {static_cast<QWidget*>(meter_), static_cast<QWidget*>(click_), static_cast<QWidget*>(key_),
                          static_cast<QWidget*>(loudness_)}) {
        each->setVisible(analysis.has_value());
    }
    twin_->setVisible(analysis && analysis->twin());
    uncertain_->setVisible(analysis && analysis->grid.barLinesUncertain() && !music_.givenBars().downbeat);
    expert_->setVisible(settings_.value().expertMode);
    click_->setChecked(transport_.click());
    if (!analysis) { return tempo_->setChoice(tr("Set Tempo")); }
    const MusicGrid& grid = analysis->grid;
    tempo_->setChoice(QString::asprintf("%.2f BPM", grid.bpm));
    tempo_->setToolTip(grid.steady ? tr("Steady tempo: the grid is a straight line")
                                   : tr("Tempo drifts: the grid follows tracked beats"));
    if (const auto twin = analysis->twin()) {
        twin_->setToolTip(
            tr("A twin tempo (%1 BPM) scores nearly as well. Turn on the click and listen.").arg(*twin, 0, 'f', 1));
    }
    meter_->setChoice(QString::number(grid.beatsPerBar) + "/4" + (grid.steady ? "" : " ~"));
    key_->setText(keyName(analysis->key));
    key_->setToolTip(tr("Key estimate (confidence %1%)").arg(std::lround(analysis->key.confidence * 100)));
    loudness_->setText(loudnessText());
    const auto& note = analysis->loudness.note;
    loudness_->setToolTip(note ? plainToolTip(QString::fromStdString(*note)) : tr("BS.1770-4 integrated loudness"));
}

void EditorHeader::askTempo() {
    bool isGiven = false;
    const double now = music_.analysis() ? music_.analysis()->grid.bpm : 120;
    const double bpm = QInputDialog::getDouble(this, tr("Set Tempo"), tr("Beats a minute:"), now,
                                               GivenBarsRange::slowestBpm, GivenBarsRange::fastestBpm, 2, &isGiven);
    if (isGiven) { music_.setTempo(bpm); }
}

void EditorHeader::fillTempo(QMenu& menu) {
    const auto offer = [&](const QString& text, double bpm, bool current = false) {
        addChoice(menu, text, current, [this, bpm] { music_.setTempo(bpm); });
    };
    if (const auto& analysis = music_.analysis()) {
        menu.addSection(tr("Tempo"));
        for (const auto& candidate : analysis->tempo.candidates) {
            offer(tr("%1 BPM  (score %2)").arg(candidate.bpm, 0, 'f', 2).arg(candidate.score, 0, 'f', 2), candidate.bpm,
                  std::abs(candidate.bpm - analysis->grid.bpm) < 0.005);
        }
        menu.addSection(tr("Relations"));
        const double bpm = analysis->grid.bpm;
        offer(tr("Half time: %1").arg(bpm / 2, 0, 'f', 2), bpm / 2);
        offer(tr("Double time: %1").arg(bpm * 2, 0, 'f', 2), bpm * 2);
        offer(tr("Triplet (×2/3): %1").arg(bpm * 2 / 3, 0, 'f', 2), bpm * 2 / 3);
        offer(tr("Dotted (×3/4): %1").arg(bpm * 3 / 4, 0, 'f', 2), bpm * 3 / 4);
        menu.addSeparator();
    }
    menu.addAction(tr("Set Tempo…"), this, &EditorHeader::askTempo);
    menu.addAction(tr("As Measured"), this, [this] { music_.forgetGivenBars(); })->setEnabled(music_.givenBars().any());
}

void EditorHeader::fillMeter(QMenu& menu) {
    const int now = music_.analysis() ? music_.analysis()->grid.beatsPerBar : 0;
    for (const auto& [text, beats] :
         {std::pair(QString("4/4"), 4), std::pair(QString("3/4"), 3), std::pair(tr("6/8 (2 beats)"), 2)}) {
        addChoice(menu, text, beats == now, [this, beats = beats] { music_.setBeatsPerBar(beats); });
    }
    menu.addSeparator();
    menu.addAction(tr("A Bar Starts at the Cursor"), this, [this] { music_.setDownbeat(document_.cursor()); });
}

}  // namespace brindlehum
