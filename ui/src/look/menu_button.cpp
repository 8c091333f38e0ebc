// A button with a choice: its texts and its menu.
#include "ui/look/menu_button.h"

#include <QMenu>

namespace brindlehum {

MenuButton::MenuButton(const QString& name, const QString& toolTip, std::function<void(QMenu&)> fill, QWidget* parent)
    : QToolButton(parent), name_(name) {
    setToolTip(toolTip);
    setAccessibleName(name);
    setAccessibleDescription(toolTip);
    setPopupMode(QToolButton::InstantPopup);
    setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    setFocusPolicy(Qt::StrongFocus);
    auto* menu = new QMenu(this);
    setMenu(menu);
    connect(menu, &QMenu::aboutToShow, this, [menu, fill = std::move(fill)] {
        menu->clear();
        fill(*menu);
    });
}

void MenuButton::setChoice(const QString& choice) {
    // An ampersand in a profile's name doesn't mark a mnemonic.
    setText(QString(choice).replace('&', "&&"));
    setAccessibleName(name_ + ": " + choice);
}

QAction* addChoice(QMenu& menu, const QString& text, bool current, std::function<void()> chosen) {
    auto* action = menu.addAction(QString(text).replace('&', "&&"));
    action->setCheckable(true);
    action->setChecked(current);
    QObject::connect(action, &QAction::triggered, &menu, [chosen = std::move(chosen)] { chosen(); });
    return action;
}

}  // namespace brindlehum
