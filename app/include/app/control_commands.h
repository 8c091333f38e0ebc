// ControlCommands: carries out the commands of the control port.
#pragma once

#include <filesystem>
#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

#include "app/control_protocol.h"
#include "app/daw_control.h"
#include "app/monitor_commands.h"
#include "app/temp_edit_batch.h"
#include "editor/playback/editor_transport.h"
#include "mix/player/player_model.h"
#include "settings/settings_store.h"

namespace brindlehum {

// Main thread: a command runs like a user's action. All references must outlive this object.
class ControlCommands {
public:
    // What the application does as a whole.
    struct Actions {
        // Shows the editor, with a file to open or without one.
        std::function<void(const std::optional<std::filesystem::path>& file)> openEditor;
        // Downloads the sound of a link, or of the one that the user has copied.
        std::function<void(const std::optional<std::string>& link)> openLink;
    };
    ControlCommands(PlayerModel& player, SettingsStore& settings, TempEditBatch& tempEdits, EditorTransport& editor,
                    MonitorEngine& monitor, DAWControl& daw, Actions actions);

    // Runs a command and returns the answer. Compares the name exactly. An unknown command, and an argument that makes
    // no sense, change nothing and return an object with "error".
    nlohmann::json handle(const std::string& command, const ControlParams& params);

    // All commands with their forms, as a page of the manual in Markdown.
    static std::string reference();

private:
    struct Command;
    static const std::vector<Command>& table();
    // What a command says against its arguments; empty if it has been carried out.
    using Problem = std::string;
    nlohmann::json ok() const;
    bool isPlaying() const { return player_.isPlaying() || editor_.isPlaying(); }
    nlohmann::json status() const;
    nlohmann::json sendToDAW(const ControlParams& params);
    Problem toggle(const ControlParams& params);
    Problem play(const ControlParams& params);
    Problem stop(const ControlParams& params);
    Problem setLoop(const ControlParams& params);
    Problem makeTempEdits(const ControlParams& params);
    Problem openEditor(const ControlParams& params);
    Problem openLink(const ControlParams& params);
    template <bool AppSettings::*member>
    Problem setSwitch(const ControlParams& params);
    Problem selectProfile(const ControlParams& params);
    Problem load(const ControlParams& params);
    Problem seek(const ControlParams& params);
    Problem setVolume(const ControlParams& params);
    Problem setUpmix(const ControlParams& params);
    Problem compareUpmix(const std::string& plain);

    PlayerModel& player_;
    SettingsStore& settings_;
    TempEditBatch& tempEdits_;
    EditorTransport& editor_;
    MonitorCommands monitor_;
    DAWControl& daw_;
    Actions actions_;
};

}  // namespace brindlehum
