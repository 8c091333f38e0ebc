// RecentFiles: a JSON array of absolute paths.
#include "ui/window/recent_files.h"

#include <QJsonArray>
#include <QJsonDocument>

#include "base/stored_path.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;

// As in base/stored_path.h.
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
    for (const QString& text : stored(defaults_)) {
        fs::path path = pathFromStored(text.toStdString());
        std::error_code error;
        if (fs::is_regular_file(path, error)) { files.push_back(std::move(path)); }
    }
    return files;
}

void RecentFiles::add(const fs::path& path) {
    std::error_code error;
    const fs::path whole = fs::absolute(path, error);
    if (error) { return; }
    const QString text = QString::fromStdString(storedPath(whole));
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
