#include "ui/ui_state.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace brindlehum {
namespace {

// Paths are bytes and geometry is binary: both go through base64.
QString coded(const QByteArray& bytes) {
    return QString::fromLatin1(bytes.toBase64());
}

QByteArray decoded(const QJsonObject& object, const char* name) {
    return QByteArray::fromBase64(object.value(QLatin1String(name)).toString().toLatin1());
}

}  // namespace

UIState UIState::load(const UserDefaults& defaults) {
    const auto text = defaults.data(key).value_or("");
    const QJsonObject object = QJsonDocument::fromJson(QByteArray::fromStdString(text)).object();
    UIState state;
    state.folder = decoded(object, "folder").toStdString();
    state.geometry = decoded(object, "geometry");
    state.splitter = decoded(object, "splitter");
    state.columns = decoded(object, "columns");
    return state;
}

void UIState::save(UserDefaults& defaults) const {
    const QJsonObject object{{"folder", coded(QByteArray::fromStdString(folder.native()))},
                             {"geometry", coded(geometry)},
                             {"splitter", coded(splitter)},
                             {"columns", coded(columns)}};
    defaults.set(key, QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString());
}

}  // namespace brindlehum
