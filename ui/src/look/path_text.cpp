// Paths as texts, in Qt's encoding of file names.
#include "ui/look/path_text.h"

#include <QFile>

namespace brindlehum {

QString pathText(const std::filesystem::path& path) {
    return QFile::decodeName(QByteArray::fromStdString(path.native()));
}

std::filesystem::path pathOfText(const QString& text) {
    return QFile::encodeName(text).toStdString();
}

}  // namespace brindlehum
