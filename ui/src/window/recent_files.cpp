// RecentFiles: a JSON array of absolute paths.
#include "ui/window/recent_files.h"

#include <QJsonArray>
#include <QJsonDocument>

#include "ui/look/path_text.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;

QStringList stored(const UserDefaults& defaults) {
    const std::string text = defaults.data(RecentFiles::key).value_or("");
    QStringList paths;
    for (const auto& path : QJsonDocument::fromJson(QByteArray::fromStdString(text)).array()) {
        if (!path.toString().isEmpty()) { paths << path.toString(); }
    }
    return paths;
}

}  // namespace

std::vector<fs::path> RecentFiles::files() const {
    std::vector<fs::path> files;
    for (const QString& path : stored(defaults_)) {
        std::error_code error;
        if (fs::is_regular_file(pathOfText(path), error)) { files.push_back(pathOfText(path)); }
    }
    return files;
}

void RecentFiles::add(const fs::path& path) {
    std::error_code error;
    const fs::path whole = fs::absolute(path, error);
    const QString text = QString::fromStdString(whole.string());
    if (error || text.toStdString() != whole.string()) { return; }
    QStringList paths = stored(defaults_);
    paths.removeAll(text);
    paths.prepend(text);
    while (size_t(paths.size()) > maxFiles) { paths.removeLast(); }
    defaults_.set(key, QJsonDocument(QJsonArray::fromStringList(paths)).toJson(QJsonDocument::Compact).toStdString());
}

void RecentFiles::clear() {
    defaults_.set(key, "[]");
}

}  // namespace brindlehum
