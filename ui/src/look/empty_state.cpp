// Lays out the texts and the button of an empty area.
#include "ui/look/empty_state.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace brindlehum {
namespace {

QLabel* line(const char* role) {
    auto* label = new QLabel;
    label->setProperty("role", role);
    label->setAlignment(Qt::AlignCenter);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

}  // namespace

EmptyState::EmptyState(QWidget* parent) : QWidget(parent) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(24, 8, 24, 8);
    column->setSpacing(8);
    column->addStretch(1);
    column->addWidget(title_ = line("empty"));
    column->addWidget(hint_ = line("secondary"));
    column->addSpacing(8);
    column->addWidget(action_ = new QPushButton, 0, Qt::AlignHCenter);
    column->addStretch(1);
    connect(action_, &QPushButton::clicked, this, &EmptyState::actionAsked);
}

void EmptyState::setTexts(const QString& title, const QString& hint, const QString& action) {
    title_->setText(title);
    hint_->setText(hint);
    hint_->setVisible(!hint.isEmpty());
    action_->setText(action);
    action_->setVisible(!action.isEmpty());
}

}  // namespace brindlehum
