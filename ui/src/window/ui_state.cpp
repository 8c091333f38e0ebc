// Reads and writes the windows' state as JSON.
#include "ui/window/ui_state.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>

namespace brindlehum {
namespace {

constexpr int maxPlayerExtra = 2000;  // logical pixels

// Qt's own states are binary, so they are stored as base64.
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
    state.geometry = decoded(object, "geometry");
    state.sidebarSplit = decoded(object, "sidebarSplit");
    state.inspectorSplit = decoded(object, "inspectorSplit");
    state.columns = decoded(object, "browserColumns");
    for (const auto& name : object.value("folded").toArray()) { state.folded << name.toString(); }
    state.playerExtra = std::clamp(object.value("playerExtra").toInt(), -maxPlayerExtra, maxPlayerExtra);
    state.inspector = object.value("inspector").toBool(true);
    state.sidebar = object.value("sidebar").toBool(true);
    return state;
}

void UIState::save(UserDefaults& defaults) const {
    const QJsonObject object{{"geometry", coded(geometry)},
                             {"sidebarSplit", coded(sidebarSplit)},
                             {"inspectorSplit", coded(inspectorSplit)},
                             {"browserColumns", coded(columns)},
                             {"folded", QJsonArray::fromStringList(folded)},
                             {"playerExtra", playerExtra},
                             {"inspector", inspector},
                             {"sidebar", sidebar}};
    defaults.set(key, QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString());
}

}  // namespace brindlehum
