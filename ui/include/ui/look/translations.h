// The windows' texts in the user's language, for as long as this object lives.
#pragma once

#include <QStringList>
#include <QTranslator>

namespace brindlehum {

class Translations {
public:
    // Installs the first of `languages` (such as "de-DE") that there is a catalogue of, with Qt's own texts if the
    // system has them. Texts made before stay as they are. English is what the sources hold: nothing is installed from
    // there on.
    explicit Translations(const QStringList& languages);

    bool isInstalled() const { return !own_.isEmpty(); }

private:
    QTranslator qt_;
    QTranslator own_;
};

}  // namespace brindlehum
