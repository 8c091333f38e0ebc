// TextField: a text editor of one line or several, with a prompt.
#pragma once

#include <QWidget>

class QLineEdit;
class QPlainTextEdit;

namespace brindlehum {

class TextField : public QWidget {
    Q_OBJECT
public:
    TextField(const QString& name, bool severalLines, QWidget* parent = nullptr);

    QString text() const;
    void setText(const QString& text);  // announces nothing
    void setPrompt(const QString& prompt);
    void setReadOnly(bool readOnly);
    QWidget& editor() const;

Q_SIGNALS:
    void edited(const QString& text);

private:
    QLineEdit* line_ = nullptr;
    QPlainTextEdit* lines_ = nullptr;
};

}  // namespace brindlehum
