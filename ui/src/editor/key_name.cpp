// Keys are names of their own in a catalogue: a letter needn't mean the same pitch elsewhere. German's B is our A#.
#include "ui/editor/key_name.h"

#include <QCoreApplication>
#include <algorithm>

namespace brindlehum {
namespace {

constexpr const char* names[] = {
    QT_TRANSLATE_NOOP("KeyName", "C major"),  QT_TRANSLATE_NOOP("KeyName", "C minor"),
    QT_TRANSLATE_NOOP("KeyName", "C# major"), QT_TRANSLATE_NOOP("KeyName", "C# minor"),
    QT_TRANSLATE_NOOP("KeyName", "D major"),  QT_TRANSLATE_NOOP("KeyName", "D minor"),
    QT_TRANSLATE_NOOP("KeyName", "D# major"), QT_TRANSLATE_NOOP("KeyName", "D# minor"),
    QT_TRANSLATE_NOOP("KeyName", "E major"),  QT_TRANSLATE_NOOP("KeyName", "E minor"),
    QT_TRANSLATE_NOOP("KeyName", "F major"),  QT_TRANSLATE_NOOP("KeyName", "F minor"),
    QT_TRANSLATE_NOOP("KeyName", "F# major"), QT_TRANSLATE_NOOP("KeyName", "F# minor"),
    QT_TRANSLATE_NOOP("KeyName", "G major"),  QT_TRANSLATE_NOOP("KeyName", "G minor"),
    QT_TRANSLATE_NOOP("KeyName", "G# major"), QT_TRANSLATE_NOOP("KeyName", "G# minor"),
    QT_TRANSLATE_NOOP("KeyName", "A major"),  QT_TRANSLATE_NOOP("KeyName", "A minor"),
    QT_TRANSLATE_NOOP("KeyName", "A# major"), QT_TRANSLATE_NOOP("KeyName", "A# minor"),
    QT_TRANSLATE_NOOP("KeyName", "B major"),  QT_TRANSLATE_NOOP("KeyName", "B minor"),
};

}  // namespace

QString keyName(const KeyResult& key) {
    const std::string name = key.tonic + (key.mode == "minor" ? " minor" : " major");
    const auto* const found = std::ranges::find(names, name);
    return found == std::end(names) ? QString::fromStdString(name) : QCoreApplication::translate("KeyName", *found);
}

}  // namespace brindlehum
