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
    for (const QString& text : stored(defaults_)) { files.push_back(pathFromStored(text.toStdString())); }
    const auto there = disk_.ask([files]() mutable {
        std::erase_if(files, [](const fs::path& file) {
            std::error_code error;
            return !fs::is_regular_file(file, error);
        });
        return files;
    });
    return there.value_or(files);
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
