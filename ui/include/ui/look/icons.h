// Symbols: one-colour icons that take the theme's colours, from the desktop's icon theme or our own set.
#pragma once

#include <QIcon>
#include <QString>

namespace brindlehum {

enum class SymbolRole { control, onAccent, warning, secondary, star };

// `name` is a file of our set without its ending ("play", "stop", ...). The desktop's symbolic icon of the same
// meaning takes its place where the icon theme has one. The icon follows a later change of theme.
QIcon symbol(const QString& name, SymbolRole role = SymbolRole::control);
QIcon applicationIcon();

}  // namespace brindlehum
