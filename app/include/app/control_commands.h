// ControlCommands: carries out the commands of the control port.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "app/control_protocol.h"
#include "app/temp_edit_batch.h"
#include "mix/player/player_model.h"
#include "settings/settings_store.h"

namespace brindlehum {

// Main thread: a command runs like a user's action. All references must outlive this object.
class ControlCommands {
public:
    ControlCommands(PlayerModel& player, SettingsStore& settings, TempEditBatch& tempEdits);

    // Runs a command and returns the answer. Compares the name exactly. An unknown command, and an argument that makes
    // no sense, change nothing and return an object with "error".
    nlohmann::json handle(const std::string& command, const ControlParams& params);

private:
    // What a command says against its arguments; empty if it has been carried out.
    using Problem = std::string;
    nlohmann::json ok() const;
    nlohmann::json status() const;
    Problem selectProfile(const ControlParams& params);
    Problem load(const ControlParams& params);
    Problem seek(const ControlParams& params);
    Problem setVolume(const ControlParams& params);
    Problem setUpmix(const ControlParams& params);

    PlayerModel& player_;
    SettingsStore& settings_;
    TempEditBatch& tempEdits_;
};

}  // namespace brindlehum
