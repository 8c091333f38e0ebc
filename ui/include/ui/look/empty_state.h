// EmptyState: a title, a hint and one button in the middle of an area that has nothing to show.
#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace brindlehum {

class EmptyState : public QWidget {
    Q_OBJECT
public:
    explicit EmptyState(QWidget* parent = nullptr);
    // An empty action text leaves the button out.
    void setTexts(const QString& title, const QString& hint, const QString& action);

Q_SIGNALS:
    void actionAsked();

private:
    QLabel* title_;
    QLabel* hint_;
    QPushButton* action_;
};

}  // namespace brindlehum
