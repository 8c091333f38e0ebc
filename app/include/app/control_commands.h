// ControlCommands: carries out the commands of the control port.
#pragma once

#include <filesystem>
#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

#include "app/control_protocol.h"
#include "app/temp_edit_batch.h"
#include "editor/playback/editor_transport.h"
#include "mix/player/player_model.h"
#include "settings/settings_store.h"

namespace brindlehum {

// Main thread: a command runs like a user's action. All references must outlive this object.
class ControlCommands {
public:
    // Shows the editor, with a file to open or without one.
    using OpenEditor = std::function<void(const std::optional<std::filesystem::path>& file)>;
    ControlCommands(PlayerModel& player, SettingsStore& settings, TempEditBatch& tempEdits, EditorTransport& editor,
                    OpenEditor openEditor);

    // Runs a command and returns the answer. Compares the name exactly. An unknown command, and an argument that makes
    // no sense, change nothing and return an object with "error".
    nlohmann::json handle(const std::string& command, const ControlParams& params);

private:
    // What a command says against its arguments; empty if it has been carried out.
    using Problem = std::string;
    nlohmann::json ok() const;
    bool isPlaying() const { return player_.isPlaying() || editor_.isPlaying(); }
    nlohmann::json status() const;
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
    OpenEditor openEditor_;
};

}  // namespace brindlehum
