// AppModel: the one owner of every long-lived model and engine, and the only place where they are wired.
#pragma once

#include <QObject>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/control_server.h"
#include "app/temp_edit_batch.h"
#include "library/model/library_model.h"
#include "mix/engine/playback_engine.h"
#include "mix/player/player_model.h"
#include "platform/platform.h"
#include "platform/task_queues.h"
#include "settings/settings_store.h"

namespace brindlehum {

// Main thread.
class AppModel : public QObject {
    Q_OBJECT
public:
    explicit AppModel(Platform platform);
    ~AppModel() override;
    // The one of this process; null before it has been made.
    static AppModel* shared();

    // Opens the control port and starts observing the settings. Once.
    void start(uint16_t controlPort = ControlServer::port);

    // The file arguments of a start, ours or a second one's: loads the first audio file among them, and brings
    // the main window up when there is no file at all.
    void openFiles(const std::vector<std::filesystem::path>& files);
    // Opens a window by its id ("main", "settings") and brings the application to the front.
    void openWindow(const std::string& id);
    // Set by the windows when they exist.
    std::function<void(const std::string& id)> openWindowAction;
    // Asks the user for folders to add to the library; `chosen` gets at least one, and isn't called on a cancel.
    using FoldersChosen = std::function<void(const std::vector<std::filesystem::path>& folders)>;
    std::function<void(FoldersChosen chosen)> chooseFoldersAction;
    // Adds folders to the library and shows the first one; the former lets the user choose them.
    void addLibraryFolder();
    void addLibraryFolders(const std::vector<std::filesystem::path>& folders);

    // Makes the temp edits of those of the files that are audio, in the background; told by the player's message.
    void makeTempEdits(const std::vector<std::filesystem::path>& files) { tempEdits_.make(files); }

    // The command table of the control port. A command of a model that isn't there is an unknown one.
    nlohmann::json handle(const std::string& command, const ControlParams& params);

    SettingsStore& settings() { return settings_; }
    PlaybackEngine& engine() { return engine_; }
    PlayerModel& player() { return player_; }
    LibraryModel& library() { return library_; }
    TempEditBatch& tempEdits() { return tempEdits_; }
    ControlServer& control() { return control_; }
    Session& session() { return platform_.session; }
    UserDefaults& defaults() { return platform_.defaults; }

private:
    nlohmann::json ok() const;
    nlohmann::json status() const;
    void selectProfile(const ControlParams& params);
    Platform platform_;
    WorkerPool pool_;
    SettingsStore settings_;
    PlaybackEngine engine_;
    ControlServer control_;
    PlayerModel player_;
    LibraryModel library_;
    TempEditBatch tempEdits_;
};

}  // namespace brindlehum
