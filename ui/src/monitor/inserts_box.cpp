// The chain's rows, and the ways to change it.
#include "ui/monitor/inserts_box.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

#include "ui/look/elided_label.h"
#include "ui/look/icons.h"
#include "ui/look/utf8_text.h"
#include "ui/monitor/insert_panel.h"
#include "ui/monitor/plugin_picker.h"

namespace brindlehum {
namespace {

constexpr int mostRows = 3;  // in sight; more are scrolled to
constexpr int spacing = 6;   // logical pixels

QHBoxLayout* rowIn(QWidget* widget) {
    auto* row = new QHBoxLayout(widget);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing);
    return row;
}

QToolButton* flat(const QString& icon, const QString& help) {
    auto* button = new QToolButton;
    if (!icon.isEmpty()) { button->setIcon(symbol(icon)); }
    button->setToolTip(help);
    button->setAccessibleName(help);
    button->setProperty("role", "flat");
    return button;
}

QLabel* label(const char* role) {
    auto* text = new QLabel;
    text->setTextFormat(Qt::PlainText);
    text->setProperty("role", role);
    return text;
}

}  // namespace

InsertRow::InsertRow(MonitorEngine& monitor, const UUID& id, QWidget* parent)
    : QWidget(parent), monitor_(monitor), id_(id) {
    name_ = new ElidedLabel(Qt::ElideRight);
    problem_ = new ElidedLabel(Qt::ElideRight);
    problem_->setProperty("role", "warning");
    auto* open = new QPushButton(tr("Open"));
    open->setToolTip(tr("Its controls"));
    bypass_ = new QPushButton;
    bypass_->setCheckable(true);
    bypass_->setToolTip(tr("Hears the sound without it, at the same time and without a click"));
    for (QPushButton* each : {open, bypass_}) { each->setProperty("role", "small"); }
    up_ = flat({}, tr("Earlier in the chain"));
    down_ = flat({}, tr("Later in the chain"));
    up_->setArrowType(Qt::UpArrow);
    down_->setArrowType(Qt::DownArrow);
    auto* remove = flat("minus", tr("Removes it"));
    connect(open, &QPushButton::clicked, this, [this] { monitor_.showUI(id_); });
    connect(bypass_, &QPushButton::clicked, this, [this] { monitor_.toggleBypass(id_); });
    connect(up_, &QToolButton::clicked, this, [this] { monitor_.inserts().move(id_, place_ - 1); });
    connect(down_, &QToolButton::clicked, this, [this] { monitor_.inserts().move(id_, place_ + 1); });
    connect(remove, &QToolButton::clicked, this, [this] { monitor_.removeInsert(UUID(id_)); });
    auto* row = rowIn(this);
    row->addWidget(name_, 1);
    row->addWidget(problem_, 1);
    for (QWidget* each : std::initializer_list<QWidget*>{open, bypass_, up_, down_, remove}) { row->addWidget(each); }
}

void InsertRow::refresh(int place, int count) {
    const Insert* const insert = monitor_.inserts().find(id_);
    if (!insert) { return; }
    place_ = place;
    name_->setFullText(textOf(insert->name));
    const QString problem = textOf(monitor_.inserts().problemOf(id_));
    problem_->setFullText(problem);
    problem_->setVisible(!problem.isEmpty());
    bypass_->setChecked(insert->isBypassed);
    bypass_->setText(insert->isBypassed ? tr("Bypassed") : tr("Bypass"));
    up_->setEnabled(place > 0);
    down_->setEnabled(place + 1 < count);
}

InsertsBox::InsertsBox(MonitorEngine& monitor, QWidget* parent) : QWidget(parent), monitor_(monitor) {
    auto* title = label("headline");
    title->setText(tr("Inserts"));
    latency_ = label("secondary");
    auto* adds = new QPushButton(tr("Add LV2 Plug-in…"));
    adds->setProperty("role", "small");
    connect(adds, &QPushButton::clicked, this, &InsertsBox::add);
    auto* head = new QHBoxLayout;
    head->addWidget(title);
    head->addWidget(latency_);
    head->addStretch(1);
    head->addWidget(adds);

    list_ = new QWidget;
    column_ = new QVBoxLayout(list_);
    column_->setContentsMargins(0, 0, 0, 0);
    column_->setSpacing(spacing);
    auto* scroll = new QScrollArea;
    scroll->setWidget(list_);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    scroll_ = scroll;

    failure_ = new QWidget;
    message_ = label("warning");
    message_->setWordWrap(true);
    auto* again = new QPushButton(tr("Load Again"));
    again->setProperty("role", "small");
    connect(again, &QPushButton::clicked, this, [this] { monitor_.inserts().restart(); });
    auto* failureRow = rowIn(failure_);
    failureRow->addWidget(message_, 1);
    failureRow->addWidget(again);

    hint_ = label("caption");
    hint_->setText(tr("A room correction goes here. It processes the speaker feeds, never your mix."));
    title->setToolTip(hint_->text());

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(spacing);
    column->addLayout(head);
    column->addWidget(scroll_);
    column->addWidget(failure_);
    column->addWidget(hint_);
    connect(&monitor.inserts(), &MonitorInserts::changed, this, &InsertsBox::refresh);
    connect(&monitor.inserts(), &MonitorInserts::uiWanted, this, [this](const QString& id) {
        if (const auto known = UUID::parse(id.toStdString())) { open(*known); }
    });
    makeRows();
    refresh();
}

InsertsBox::~InsertsBox() {
    for (const auto& [id, panel] : panels_) { delete panel; }
}

void InsertsBox::refresh() {
    const auto& inserts = monitor_.inserts().list();
    std::vector<UUID> now;
    for (const Insert& each : inserts) { now.push_back(each.id); }
    if (now != shown_) {
        shown_ = std::move(now);
        makeRows();
    }
    for (size_t i = 0; i < rows_.size(); ++i) { rows_[i]->refresh(int(i), int(rows_.size())); }
    const double milliseconds = 1000 * monitor_.inserts().latency();
    latency_->setText(tr("%1 ms later").arg(milliseconds, 0, 'f', 1));
    latency_->setVisible(milliseconds > 0);
    message_->setText(textOf(monitor_.inserts().message()));
    failure_->setVisible(monitor_.inserts().hasFailed());
}

void InsertsBox::makeRows() {
    for (InsertRow* row : std::exchange(rows_, {})) {
        column_->removeWidget(row);
        row->hide();
        row->deleteLater();  // it may be the sender
    }
    for (const UUID& id : shown_) {
        rows_.push_back(new InsertRow(monitor_, id));
        column_->addWidget(rows_.back());
        rows_.back()->show();
    }
    scroll_->setVisible(!rows_.empty());
    hint_->setVisible(rows_.empty());  // with inserts, its room is theirs
    if (rows_.empty()) { return; }
    const int row = rows_.front()->sizeHint().height() + spacing;
    // In a low window one row stays in sight.
    scroll_->setMinimumHeight(row);
    scroll_->setMaximumHeight(std::min(int(rows_.size()), mostRows) * row);
}

void InsertsBox::add() {
    auto* picker = new PluginPicker(monitor_.plugins(), window());
    picker->setAttribute(Qt::WA_DeleteOnClose);
    connect(picker, &QDialog::accepted, this, [this, picker] {
        if (const auto plugin = picker->chosen()) { monitor_.addInsert(*plugin); }
    });
    picker->open();
}

void InsertsBox::open(const UUID& id) {
    QPointer<InsertPanel>& panel = panels_[id];
    if (!panel) { panel = new InsertPanel(monitor_, id); }
    panel->show();
    panel->raise();
    panel->activateWindow();
}

void InsertsBox::showEvent(QShowEvent* /*event*/) {
    monitor_.plugins().refresh();
}

}  // namespace brindlehum
