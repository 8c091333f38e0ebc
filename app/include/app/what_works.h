// What works on this desktop: each thing that Brindlehum needs of it, what it is for, and what helps if it is missing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/applications.h"
#include "platform/audio_system.h"

namespace brindlehum {

// As found at one moment. What hasn't been looked for yet is absent.
struct DesktopFacts {
    enum class Display : uint8_t { x11, wayland, none };

    SoundServer server = SoundServer::running;
    Display display = Display::x11;
    bool hasTray = true;
    bool readsSelections = true;  // accessibility is on
    bool isSpaceTaken = false;    // by another program
    KeyAccess keys = KeyAccess::granted;
    std::vector<std::string> dawProblems;                              // of the user's own table
    std::optional<std::optional<std::filesystem::path>> downloadTool;  // its path, or that there is none
    std::optional<bool> hasKeyring;
    std::optional<std::optional<std::filesystem::path>> hrtfSet;
    std::string hrtfProblem;             // of the user's own set
    std::optional<std::size_t> effects;  // number of LV2 effects

    // `platform`: what draws our windows, by Qt's name; `seesWindows`: the session says where windows are. An X
    // server inside a Wayland session draws them as well, and knows nothing of the session's other windows.
    static Display displayOf(std::string_view platform, bool seesWindows);
};

struct WorksRow {
    enum class State : uint8_t { works, partly, missing, looking };
    std::string subject;
    State state = State::works;
    std::string text;  // what is there, or what is missed without it
    std::string cure;  // empty where none is needed
    bool operator==(const WorksRow&) const = default;
};

// Always the same subjects in the same order.
std::vector<WorksRow> whatWorks(const DesktopFacts& facts);

}  // namespace brindlehum
