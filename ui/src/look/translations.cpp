// Translations: the catalogues are built into the program.
#include "ui/look/translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>

// Has to stand outside of any namespace.
static void initCatalogues() {
    Q_INIT_RESOURCE(translations);
}

namespace brindlehum {

Translations::Translations(const QStringList& languages) {
    initCatalogues();
    for (QString language : languages) {
        language.replace('-', '_');
        if (language == "C" || language == "en" || language.startsWith("en_")) { return; }
        // load() drops the country and the script by itself.
        if (!own_.load("brindlehum_" + language, ":/translations")) { continue; }
        if (qt_.load("qtbase_" + language, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
            QCoreApplication::installTranslator(&qt_);
        }
        QCoreApplication::installTranslator(&own_);
        return;
    }
}

}  // namespace brindlehum
