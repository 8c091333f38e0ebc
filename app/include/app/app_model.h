// AppModel: owns every long-lived model and engine, and is the only one that connects them.
#pragma once

#include <QObject>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/bars_by_hand.h"
#include "app/control_commands.h"
#include "app/control_server.h"
#include "app/daw_control.h"
#include "app/finder_tracker.h"
#include "app/instance_link.h"
#include "app/key_tap.h"
#include "app/link_downloads.h"
#include "app/media_controls.h"
#include "app/piece_bars.h"
#include "app/space_rule.h"
#include "app/temp_edit_batch.h"
#include "editor/model/editor_model.h"
#include "library/model/library_model.h"
#include "mix/engine/playback_engine.h"
#include "mix/engine/speaker_test.h"
#include "mix/player/player_model.h"
#include "monitor/engine/monitor_engine.h"
#include "platform/disk_work.h"
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

    // Opens the control port and starts to observe the settings. Once.
    void start(uint16_t controlPort = ControlServer::port);

    // Loads the first file of this start or a later one, or shows it if it is a folder; says what was wrong with the
    // arguments, and shows the main window.
    void open(const StartRequest& request);
    // Opens a window by its id ("main", "editor", "monitor", "settings"; "works" is a page of the settings) and brings
    // the application to the front.
    void openWindow(const std::string& id);
    // The windows set this once they exist.
    std::function<void(const std::string& id)> openWindowAction;
    // Asks the user for folders to add to the library. `chosen` gets at least one; a cancel doesn't call it.
    using FoldersChosen = std::function<void(const std::vector<std::filesystem::path>& folders)>;
    std::function<void(FoldersChosen chosen)> chooseFoldersAction;
    // Lets the user choose folders, and adds those.
    void addLibraryFolder();
    // Adds folders to the library and shows the first one.
    void addLibraryFolders(const std::vector<std::filesystem::path>& folders);

    // Opens the file in the editor, or only shows it without one.
    void openEditor(const std::optional<std::filesystem::path>& file);
    // The same for the loaded sound; nothing without one.
    void editLoaded() {
        if (const auto& info = player_.sound().info()) { openEditor(info->url); }
    }
    // The window sets this: it asks before unsaved edits would be lost.
    std::function<void(const std::filesystem::path& file)> openInEditorAction;

    // Makes the temp edits of the audio files among `files` in the background; the player's message shows the progress.
    void makeTempEdits(const std::vector<std::filesystem::path>& files) { tempEdits_.make(files); }

    // Downloads and plays the sound of the web link that the user has copied.
    void openCopiedLink() { links_.open(clipboardText ? clipboardText() : std::string()); }
    // The windows set this.
    std::function<std::string()> clipboardText;
    // The windows set this: ends the application once the user has been asked about what is unsaved.
    std::function<void()> quitAction;

    // For a surface where the user sets the bars of a piece.
    std::unique_ptr<PieceBars> barsOf(const std::filesystem::path& file);

    // Runs a command of the control port: see ControlCommands.
    nlohmann::json handle(const std::string& command, const ControlParams& params);

    SettingsStore& settings() { return settings_; }
    const PlaybackEngine& engine() const { return engine_; }  // read only; a seat controls playback
    PlayerModel& player() { return player_; }
    LibraryModel& library() { return library_; }
    EditorModel& editor() { return editor_; }
    MonitorEngine& monitor() { return monitor_; }
    SpeakerTest& speakerTest() { return speakerTest_; }
    TempEditBatch& tempEdits() { return tempEdits_; }
    LinkDownloads& links() { return links_; }
    ControlServer& control() { return control_; }
    Session& session() { return platform_.session; }
    UserDefaults& defaults() { return platform_.defaults; }
    DAWControl& daw() { return daw_; }
    MainLoop& loop() { return platform_.loop; }
    DiskWork& disk() { return disk_; }
    FinderTracker& finder() { return finder_; }
    const KeyTap& keyTap() const { return keyTap_; }

    // The desktop lets the file manager's selection be read; true where there is nothing to read.
    bool axTrusted() const { return axTrusted_; }
    // The file manager in front can't be read.
    bool automationDenied() const { return finder_.automationDenied(); }
    // After a click of the user: switches on what axTrusted needs.
    void requestAccessibility();

Q_SIGNALS:
    void settingsProblemChanged();  // UserDefaults::problem has
    // The file manager came to front or left, or its front window moved; `frame` in device pixels.
    void fileManagerState(bool active, const std::optional<brindlehum::ScreenRect>& frame);
    // Emitted before fileManagerState: the front window's id at the display server, 0 for none.
    void fileManagerWindow(uint64_t id);
    void permissionsChanged();  // axTrusted, automationDenied or KeyTap::isRefused

private:
    void useHRTFSet();  // of the settings
    void linkArrived(const std::filesystem::path& file, const std::string& link);
    void showFolder(const std::filesystem::path& folder);
    void startFinder();
    void watchAccessibility();
    void awaitAccessibility();
    SpaceState spaceState() const;
    void refreshSpace();  // who gets Space next
    void pressSpace(const SpaceState& state, bool isRepeat);
    bool showFile(const std::filesystem::path& file, bool isRepeat);
    void loadFromFinder(const std::filesystem::path& file, bool play);

    Platform platform_;
    WorkerPool pool_;
    // Batches and the editor may name the same folder: one at a time.
    std::shared_ptr<SerialQueue> tempEditQueue_ = std::make_shared<SerialQueue>("Brindlehum.tempedits");
    SettingsStore settings_;
    BarsByHand bars_;
    PlaybackEngine engine_;
    FinderTracker finder_;
    KeyTap keyTap_;
    bool axTrusted_;
    TimerHandle trustTimer_;
    ControlServer control_;
    PlayerModel player_;
    EditorModel editor_;
    SpeakerTest speakerTest_;
    LibraryModel library_;
    MonitorEngine monitor_;
    TempEditBatch tempEdits_;
    LinkDownloads links_;
    MediaControls media_;
    DAWControl daw_;
    ControlCommands commands_;
    DiskWork disk_;  // last member, so that its work ends first
};

}  // namespace brindlehum
