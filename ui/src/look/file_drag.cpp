// Converts paths to and from drag data, and runs drags.
#include "ui/look/file_drag.h"

#include <QClipboard>
#include <QDrag>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

#include "ui/look/path_text.h"

namespace brindlehum::FileDrag {
namespace {

// Encodes byte by byte (RFC 8089): Qt's own conversion expects UTF-8, and a name needn't be UTF-8.
QUrl urlOf(const std::filesystem::path& file) {
    return QUrl::fromEncoded("file://" + QByteArray::fromStdString(file.native()).toPercentEncoding("/"));
}

std::filesystem::path pathOf(const QUrl& local) {
    return QByteArray::fromPercentEncoding(local.path(QUrl::FullyEncoded).toLatin1()).toStdString();
}

}  // namespace

QMimeData* mimeData(const std::vector<std::filesystem::path>& files) {
    QList<QUrl> urls;
    for (const auto& file : files) { urls.append(urlOf(file)); }
    auto* data = new QMimeData;
    data->setUrls(urls);
    return data;
}

std::vector<std::filesystem::path> localPaths(const QMimeData& data) {
    std::vector<std::filesystem::path> paths;
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile()) { paths.push_back(pathOf(url)); }
    }
    return paths;
}

QByteArray uriList(const std::vector<std::filesystem::path>& files) {
    QByteArray list;
    for (const auto& file : files) { list += urlOf(file).toEncoded() + "\r\n"; }
    return list;
}

QByteArray copiedList(const std::vector<std::filesystem::path>& files) {
    QByteArray lines = "copy";
    for (const auto& file : files) { lines += '\n' + urlOf(file).toEncoded(); }
    return lines;
}

void copy(const std::vector<std::filesystem::path>& files) {
    QMimeData* data = mimeData(files);
    QStringList paths;
    for (const auto& file : files) { paths << pathText(file); }
    data->setData(copiedFiles, copiedList(files));
    data->setText(paths.join('\n'));
    QGuiApplication::clipboard()->setMimeData(data);
}

bool run(QWidget* source, std::unique_ptr<QMimeData> data, const Picture& picture) {
    auto* drag = new QDrag(source);  // Qt deletes it when it is over
    drag->setMimeData(data.release());
    drag->setPixmap(picture.image);
    drag->setHotSpot(picture.hotSpot);
    return drag->exec(Qt::CopyAction) != Qt::IgnoreAction;
}

}  // namespace brindlehum::FileDrag
