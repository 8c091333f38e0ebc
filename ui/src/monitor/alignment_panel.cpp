// A row of delay and polarity for each speaker.
#include "ui/monitor/alignment_panel.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <functional>

#include "ui/look/form_scroll.h"
#include "ui/look/number_field.h"

namespace brindlehum {
namespace {

constexpr int margin = 16;  // logical pixels

void edit(MonitorEngine& monitor, SpeakerID speaker, const std::function<void(SpeakerAlignment&)>& change) {
    MonitorState next = monitor.state();
    SpeakerAlignment& alignment = next.alignment[speaker];
    change(alignment);
    if (alignment == SpeakerAlignment()) { next.alignment.erase(speaker); }
    monitor.setState(next);
}

QLabel* secondary(const QString& text) {
    auto* label = new QLabel(text);
    label->setProperty("role", "secondary");
    return label;
}

}  // namespace

AlignmentPanel::AlignmentPanel(MonitorEngine& monitor, QWidget* parent) : QWidget(parent, Qt::Tool), monitor_(monitor) {
    setObjectName("window");
    setAttribute(Qt::WA_StyledBackground);
    setWindowTitle(tr("Speaker Alignment"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(8);
    auto* rows = new QWidget;
    auto* rowsColumn = new QVBoxLayout(rows);
    rowsColumn->setContentsMargins(0, 0, 8, 0);
    rowsColumn->addWidget(table_ = new QWidget);
    rowsColumn->addStretch(1);
    column->addWidget(none_ = secondary(tr("Headphones need no alignment: choose a profile with speakers.")));
    none_->setWordWrap(true);
    column->addWidget(new FormScroll(rows), 1);
    auto* clear = new QPushButton(tr("Clear All"));
    connect(clear, &QPushButton::clicked, this, [this] {
        MonitorState next = monitor_.state();
        next.alignment.clear();
        monitor_.setState(next);
    });
    column->addWidget(clear, 0, Qt::AlignRight);
    connect(&monitor, &MonitorEngine::changed, this, &AlignmentPanel::refresh);
    resize(320, 420);
    refresh();
}

void AlignmentPanel::bringUp() {
    show();
    raise();
}

void AlignmentPanel::rebuild(const SpeakerList& list) {
    shown_ = list;
    rows_.clear();
    auto* old = std::exchange(table_, new QWidget);
    delete old->parentWidget()->layout()->replaceWidget(old, table_);
    old->deleteLater();
    auto* grid = new QGridLayout(table_);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(4);
    grid->addWidget(secondary(tr("Speaker")), 0, 0);
    grid->addWidget(secondary(tr("Delay")), 0, 1);
    grid->addWidget(secondary(tr("Polarity")), 0, 2);
    for (size_t i = 0; i < list.size(); ++i) { addRow(list[i], list, int(i) + 1); }
    grid->setColumnStretch(2, 1);
}

void AlignmentPanel::addRow(SpeakerID speaker, const SpeakerList& list, int at) {
    const QString name = QString::fromStdString(label(speaker, list));
    auto* delay = new NumberField(tr("Delay of %1").arg(name), {0, SpeakerAlignment::longestMs, 0.1, 0, " ms", false});
    delay->setToolTip(tr("What is nearer than the others waits for them: 2.9 ms a metre. Double-click: 0"));
    delay->onEdit = [this, speaker](double ms) {
        edit(monitor_, speaker, [ms](SpeakerAlignment& alignment) { alignment.delayMs = ms; });
    };
    auto* inverted = new QCheckBox(tr("Inverted"));
    inverted->setAccessibleName(tr("%1 inverted").arg(name));
    connect(inverted, &QCheckBox::clicked, this, [this, speaker](bool on) {
        edit(monitor_, speaker, [on](SpeakerAlignment& alignment) { alignment.inverted = on; });
    });
    auto* grid = static_cast<QGridLayout*>(table_->layout());
    grid->addWidget(new QLabel(name), at, 0);
    grid->addWidget(delay, at, 1);
    grid->addWidget(inverted, at, 2);
    rows_.push_back({speaker, delay, inverted});
}

void AlignmentPanel::refresh() {
    const OutputProfile& profile = monitor_.profile();
    const bool headphones = profile.kind == OutputProfile::Kind::headphones;
    const SpeakerList list = headphones ? SpeakerList() : speakers(profile.layout);
    if (list != shown_) { rebuild(list); }
    none_->setVisible(headphones);
    table_->setVisible(!headphones);
    for (const Row& row : rows_) {
        const auto found = monitor_.state().alignment.find(row.speaker);
        const SpeakerAlignment now = found == monitor_.state().alignment.end() ? SpeakerAlignment() : found->second;
        row.delay->setNumber(now.delayMs);
        row.inverted->setChecked(now.inverted);
    }
}

}  // namespace brindlehum
