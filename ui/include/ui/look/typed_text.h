// The text that a key types, for lists that pass letters on to the search field.
#pragma once

#include <QKeyEvent>

namespace brindlehum {

// Empty for keys that are commands, and for Space, which plays.
inline QString typedText(const QKeyEvent& event) {
    const auto others = event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier | Qt::GroupSwitchModifier);
    const QString text = event.text();
    return others == Qt::NoModifier && !text.isEmpty() && text[0].isPrint() && text[0] != ' ' ? text : QString();
}

}  // namespace brindlehum
