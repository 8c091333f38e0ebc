// MenuButton: a button that shows the current choice and opens a menu made anew at each opening.
#pragma once

#include <QToolButton>
#include <functional>

class QMenu;

namespace brindlehum {

class MenuButton : public QToolButton {
    Q_OBJECT
public:
    // `name` says for accessibility what is chosen here; `fill` puts the entries into the empty menu.
    MenuButton(const QString& name, const QString& toolTip, std::function<void(QMenu&)> fill,
               QWidget* parent = nullptr);
    // Shows `choice` and tells it to assistive technology together with the name.
    void setChoice(const QString& choice);

private:
    QString name_;
};

// Adds an entry with a check mark when it is the current one.
QAction* addChoice(QMenu& menu, const QString& text, bool current, std::function<void()> chosen);

}  // namespace brindlehum
