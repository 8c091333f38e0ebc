// A row for each subject: a sign, what it is for, and what helps.
#include "ui/settings/works_page.h"

#include <QCoreApplication>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "ui/look/symbol_label.h"
#include "ui/look/utf8_text.h"

namespace brindlehum {
namespace {

using State = WorksRow::State;

QWidget* sign(State state) {
    switch (state) {
        case State::works:
            return new SymbolLabel("check", SymbolRole::secondary);
        case State::looking:
            return new SymbolLabel("hourglass", SymbolRole::secondary);
        case State::partly:
        case State::missing:
            break;
    }
    return new SymbolLabel("warning", SymbolRole::warning);
}

// With a place for the subject.
QString sentence(State state) {
    switch (state) {
        case State::works:
            return QCoreApplication::translate("WorksPage", "%1 works");
        case State::partly:
            return QCoreApplication::translate("WorksPage", "%1 works in part");
        case State::looking:
            return QCoreApplication::translate("WorksPage", "%1 is being looked for");
        case State::missing:
            break;
    }
    return QCoreApplication::translate("WorksPage", "%1 doesn't work");
}

QLabel* text(const std::string& line, const char* role) {
    auto* label = new QLabel(textOf(line));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    if (role) { label->setProperty("role", role); }
    return label;
}

QWidget* makeList(const std::vector<WorksRow>& rows) {
    auto* list = new QWidget;
    auto* grid = new QGridLayout(list);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(14);
    grid->setColumnStretch(2, 1);
    for (int at = 0; const WorksRow& row : rows) {
        auto* subject = text(row.subject, nullptr);
        subject->setWordWrap(false);
        auto* column = new QVBoxLayout;
        column->setSpacing(2);
        column->addWidget(text(row.text, "secondary"));
        if (!row.cure.empty()) {
            auto* cure = text(row.cure, nullptr);
            cure->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
            cure->setCursor(Qt::IBeamCursor);
            cure->setAccessibleName(QCoreApplication::translate("WorksPage", "What helps: %1").arg(textOf(row.cure)));
            column->addWidget(cure);
        }
        auto* mark = sign(row.state);
        mark->setAccessibleName(sentence(row.state).arg(textOf(row.subject)));
        grid->addWidget(mark, at, 0, Qt::AlignTop);
        grid->addWidget(subject, at, 1, Qt::AlignTop);
        grid->addLayout(column, at++, 2);
    }
    return list;
}

}  // namespace

WorksPage::WorksPage(Now now, const std::vector<Prepare>& looks, MainLoop& loop)
    : now_(std::move(now)), rows_(new QVBoxLayout(this)) {
    rows_->setContentsMargins(20, 16, 20, 16);
    rows_->addStretch(1);
    for (const Prepare& look : looks) {
        searches_.push_back(std::unique_ptr<Search>(new Search{look, {}, {}, Background(loop, "Brindlehum.works")}));
    }
}

void WorksPage::refresh() {
    for (auto& search : searches_) {
        if (search->line.isBusy()) { continue; }  // perhaps at a disk that doesn't answer
        search->queue.run(search->line, search->prepare(), [this, &found = search->found](Found now) {
            found = std::move(now);
            fill();
        });
    }
    fill();
}

void WorksPage::fill() {
    DesktopFacts facts = now_();
    for (const auto& search : searches_) {
        if (search->found) { search->found(facts); }
    }
    auto rows = whatWorks(facts);
    if (rows == shown_) { return; }
    shown_ = std::move(rows);
    delete list_;
    rows_->insertWidget(0, list_ = makeList(shown_));
}

void WorksPage::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    Q_EMIT shown();
    refresh();
}

bool WorksPage::event(QEvent* event) {
    if (event->type() == QEvent::WindowActivate && isVisible()) { refresh(); }
    return QWidget::event(event);
}

}  // namespace brindlehum
