// Converts paths to and from drag data, and runs drags.
#include "ui/look/file_drag.h"

#include <QDrag>
#include <QMimeData>
#include <QPainter>
#include <QUrl>
#include <QWidget>
#include <algorithm>

namespace brindlehum::FileDrag {
namespace {

// A drag picture larger than this hides what lies under the pointer.
constexpr int maxPictureWidth = 320;  // logical pixels

QPixmap translucent(const QPixmap& picture) {
    QPixmap pale(picture.size());
    pale.setDevicePixelRatio(picture.devicePixelRatio());
    pale.fill(Qt::transparent);
    QPainter painter(&pale);
    painter.setOpacity(0.8);
    painter.drawPixmap(0, 0, picture);
    return pale;
}

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

void run(QWidget* source, const std::filesystem::path& file, const QPixmap& picture, const QPoint& hotSpot) {
    auto* drag = new QDrag(source);  // Qt deletes it when it is over
    drag->setMimeData(mimeData({file}));
    if (!picture.isNull()) {
        const double shrink = std::min(1.0, maxPictureWidth / std::max(1.0, picture.deviceIndependentSize().width()));
        const QPixmap scaled =
            shrink < 1 ? picture.scaled(picture.size() * shrink, Qt::KeepAspectRatio, Qt::SmoothTransformation)
                       : picture;
        drag->setPixmap(translucent(scaled));
        drag->setHotSpot(hotSpot * shrink);
    }
    drag->exec(Qt::CopyAction);
}

}  // namespace brindlehum::FileDrag
