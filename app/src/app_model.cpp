#include "app/app_model.h"

#include <QPointer>
#include <QString>
#include <algorithm>
#include <thread>

namespace brindlehum {

namespace {

AppModel* theModel = nullptr;

int poolThreads() {
    return int(std::clamp(std::thread::hardware_concurrency(), 1U, 4U));
}

}  // namespace

AppModel::AppModel(Platform platform)
    : platform_(platform),
      pool_(poolThreads()),
      settings_(platform.defaults),
      engine_(platform.audio, platform.loop),
      player_(engine_, settings_, platform.loop, pool_),
      library_(settings_, platform.loop, platform.catalogFile),
      tempEdits_(player_, settings_, platform.session.fileManager(), platform.loop) {
    theModel = this;
}

AppModel::~AppModel() {
    theModel = nullptr;
}

AppModel* AppModel::shared() {
    return theModel;
}

void AppModel::start(uint16_t controlPort) {
    control_.handler = [this](const std::string& command, const ControlParams& params) {
        return handle(command, params);
    };
    control_.start(controlPort);
    connect(&settings_, &SettingsStore::changed, this, [this](const AppSettings& now, const AppSettings& before) {
        // The rest of the settings doesn't reach the player.
        if (now.profiles != before.profiles || now.activeProfileID != before.activeProfileID ||
            now.monoToCenter != before.monoToCenter) {
            player_.profileChanged();
        }
    });
}

void AppModel::openFiles(const std::vector<std::filesystem::path>& files) {
    const auto audio = std::find_if(files.begin(), files.end(), AudioFileInfo::isAudioPath);
    if (audio != files.end()) { player_.load(*audio, settings_.value().autoPlay); }
    openWindow("main");
}

void AppModel::openWindow(const std::string& id) {
    if (openWindowAction) { openWindowAction(id); }
}

void AppModel::addLibraryFolder() {
    if (!chooseFoldersAction) { return; }
    chooseFoldersAction([self = QPointer(this)](const std::vector<std::filesystem::path>& folders) {
        if (self) { self->addLibraryFolders(folders); }
    });
}

void AppModel::addLibraryFolders(const std::vector<std::filesystem::path>& folders) {
    if (folders.empty()) { return; }
    for (const auto& folder : folders) { library_.roots().add(folder); }
    library_.search().clearFilters();
    library_.listing().open(folders.front());
}

nlohmann::json AppModel::handle(const std::string& command, const ControlParams& params) {
    if (command == "status") { return status(); }
    if (command == "toggle") {
        player_.togglePlay();
    } else if (command == "play") {
        player_.play(std::nullopt);
    } else if (command == "stop") {
        player_.stopAndReturn();
    } else if (command == "loop") {
        player_.setLoop(!player_.loop());
    } else if (command == "panel") {
        settings_.change([](AppSettings& s) { s.finderPanel = !s.finderPanel; });
    } else if (command == "expert") {
        settings_.change([](AppSettings& s) { s.expertMode = !s.expertMode; });
    } else if (command == "tempedits") {
        if (player_.info()) { makeTempEdits({player_.info()->url}); }
    } else if (command == "profile") {
        selectProfile(params);
    } else {
        return {{"error", "unknown command " + command}};
    }
    return ok();
}

nlohmann::json AppModel::ok() const {
    return {{"ok", true}, {"profile", settings_.activeProfile().name}, {"playing", player_.isPlaying()}};
}

nlohmann::json AppModel::status() const {
    const AppSettings& settings = settings_.value();
    nlohmann::json profiles = nlohmann::json::array();
    for (const auto& profile : settings.profiles) { profiles.push_back(profile.name); }
    return {{"playing", player_.isPlaying()},
            {"file", player_.info() ? player_.info()->url.filename().string() : std::string()},
            {"profile", settings.activeProfile().name},
            {"profiles", profiles},
            {"finderPanel", settings.finderPanel},
            {"expert", settings.expertMode}};
}

// The profile of this name in any case, else the one after the active one, wrapping round.
void AppModel::selectProfile(const ControlParams& params) {
    const auto& profiles = settings_.value().profiles;
    if (profiles.empty()) { return; }
    if (const auto name = params.find("name"); name != params.end()) {
        const QString wanted = QString::fromStdString(name->second);
        for (const auto& profile : profiles) {
            if (QString::fromStdString(profile.name).compare(wanted, Qt::CaseInsensitive) == 0) {
                return player_.selectProfile(profile.id);
            }
        }
    }
    const UUID active = settings_.activeProfile().id;
    const auto it = std::find_if(profiles.begin(), profiles.end(), [&](const auto& p) { return p.id == active; });
    const size_t next = (size_t(it - profiles.begin()) + 1) % profiles.size();
    player_.selectProfile(profiles[next].id);
}

}  // namespace brindlehum
