// defaultCatalogFile: the catalog in the user's data folder.
#include "library/catalog/catalog_location.h"

#include <QStandardPaths>

namespace brindlehum {

std::filesystem::path defaultCatalogFile() {
    const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return std::filesystem::path(data.toStdString()) / "Brindlehum" / "Catalog.sqlite";
}

}  // namespace brindlehum
