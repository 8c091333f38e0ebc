// What a key writes, where lists hand letters on to the search field.
#pragma once

#include <QKeyEvent>

namespace brindlehum {

// Empty for a key that commands, and for the Space, which plays.
inline QString typedText(const QKeyEvent& event) {
    const auto others = event.modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier | Qt::GroupSwitchModifier);
    const QString text = event.text();
    return others == Qt::NoModifier && !text.isEmpty() && text[0].isPrint() && text[0] != ' ' ? text : QString();
}

}  // namespace brindlehum
