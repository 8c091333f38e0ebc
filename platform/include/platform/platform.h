// Platform: the services of the machine that the application uses; made by main, or by a test.
#pragma once

#include <filesystem>

#include "platform/audio_system.h"
#include "platform/main_loop.h"
#include "platform/session.h"

namespace brindlehum {

class UserDefaults;

// All of it outlives the application.
struct Platform {
    MainLoop& loop;
    AudioSystem& audio;
    UserDefaults& defaults;
    Session& session;
    std::filesystem::path catalogFile;
    std::filesystem::path journals = {};  // of unsaved edits; empty: the user's own folder for them
    std::filesystem::path daws = {};      // the user's table of DAW keys; empty: none
};

}  // namespace brindlehum
