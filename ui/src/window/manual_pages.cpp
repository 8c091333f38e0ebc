// Finds the pages and reads their titles.
#include "ui/window/manual_pages.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace brindlehum {
namespace {

QString titleOf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) { return {}; }
    return QString::fromUtf8(file.readLine()).remove(0, 2).trimmed();  // "# Library"
}

}  // namespace

QUrl keyPageUrl() {
    return QUrl("manual:keys.md");
}

QList<ManualPage> manualPages() {
    QList<ManualPage> pages;
    for (const char* const folder : {BRINDLEHUM_MANUAL_INSTALLED, BRINDLEHUM_MANUAL_SOURCE}) {
        const QDir pagesFolder(QDir(QCoreApplication::applicationDirPath()).filePath(folder));
        for (const QString& name : pagesFolder.entryList({"*.md"}, QDir::Files, QDir::Name)) {
            const QString path = QDir::cleanPath(pagesFolder.filePath(name));
            pages.push_back({QUrl::fromLocalFile(path), titleOf(path)});
        }
        if (!pages.isEmpty()) { break; }
    }
    pages.push_back({keyPageUrl(), QCoreApplication::translate("ManualPages", "Keys")});
    return pages;
}

}  // namespace brindlehum
