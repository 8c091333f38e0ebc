// MenuButton: a button that shows the current choice and opens a menu that is filled at each opening.
#pragma once

#include <QToolButton>
#include <functional>

class QMenu;

namespace brindlehum {

class MenuButton : public QToolButton {
    Q_OBJECT
public:
    // `name` is the accessible name of what is chosen; `fill` puts the entries into the empty menu.
    MenuButton(const QString& name, const QString& toolTip, std::function<void(QMenu&)> fill,
               QWidget* parent = nullptr);
    // Shows `choice`; the accessible name becomes "name: choice".
    void setChoice(const QString& choice);

private:
    QString name_;
};

// Adds an entry with a check mark when it is the current one.
QAction* addChoice(QMenu& menu, const QString& text, bool current, std::function<void()> chosen);

}  // namespace brindlehum
