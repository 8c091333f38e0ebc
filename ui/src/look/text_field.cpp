// One editor or the other behind a text field.
#include "ui/look/text_field.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace brindlehum {
namespace {

constexpr int severalLines = 3;

}  // namespace

TextField::TextField(const QString& name, bool several, QWidget* parent) : QWidget(parent) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    if (several) {
        column->addWidget(lines_ = new QPlainTextEdit);
        lines_->setTabChangesFocus(true);
        lines_->setFixedHeight(lines_->fontMetrics().lineSpacing() * severalLines + 20);
        connect(lines_, &QPlainTextEdit::textChanged, this, [this] { Q_EMIT edited(text()); });
    } else {
        column->addWidget(line_ = new QLineEdit);
        connect(line_, &QLineEdit::textEdited, this, &TextField::edited);
    }
    editor().setAccessibleName(name);
    setFocusProxy(&editor());
}

QWidget& TextField::editor() const {
    return lines_ ? static_cast<QWidget&>(*lines_) : *line_;
}

QString TextField::text() const {
    return lines_ ? lines_->toPlainText() : line_->text();
}

void TextField::setText(const QString& next) {
    if (next == text()) { return; }
    const QSignalBlocker quiet(&editor());
    if (lines_) {
        lines_->setPlainText(next);
    } else {
        line_->setText(next);
        line_->setCursorPosition(0);  // a long text shows its beginning
    }
}

void TextField::setPrompt(const QString& prompt) {
    if (lines_) {
        lines_->setPlaceholderText(prompt);
    } else {
        line_->setPlaceholderText(prompt);
    }
}

void TextField::setReadOnly(bool readOnly) {
    if (lines_) {
        lines_->setReadOnly(readOnly);
    } else {
        line_->setReadOnly(readOnly);
    }
}

}  // namespace brindlehum
