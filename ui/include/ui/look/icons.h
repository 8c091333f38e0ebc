// Symbols: one-colour icons that take the theme's colours, from the desktop's icon theme or our own set.
#pragma once

#include <QIcon>
#include <QString>

class QAbstractButton;
class QWidget;

namespace brindlehum {

enum class SymbolRole { control, onAccent, warning, secondary, star };

// `name` is a file of our set without its extension ("play", "stop", ...). If the desktop's icon theme has a symbolic
// icon of the same meaning, that one is used. The icon follows later changes of theme. `owner` shows it, and gives it
// the colours of its surface.
QIcon symbol(const QString& name, SymbolRole role = SymbolRole::control, const QWidget* owner = nullptr);
void setSymbol(QAbstractButton& button, const QString& name, SymbolRole role = SymbolRole::control);
QIcon applicationIcon();

}  // namespace brindlehum
