// ManualPages: the pages of the manual, Markdown files that lie beside an installed program or in the source tree.
#pragma once

#include <QList>
#include <QString>
#include <QUrl>

namespace brindlehum {

struct ManualPage {
    QUrl url;
    QString title;
};

// Of the folder that this program belongs to, in their order; the list of keys is the last. Reads the disk.
QList<ManualPage> manualPages();

// The list of keys as a page; no file.
QUrl keyPageUrl();

}  // namespace brindlehum
