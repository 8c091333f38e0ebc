// What the user has set, for a command that stores nothing of its own.
#pragma once

#include <initializer_list>

#include "settings/user_defaults.h"

namespace brindlehum::cli {

// Copies these keys of the user's settings.
inline void takeUsersSettings(MemoryDefaults& defaults, std::initializer_list<const char*> keys) {
    const FileDefaults users;
    for (const char* key : keys) {
        if (const auto stored = users.data(key)) { defaults.set(key, *stored); }
    }
}

}  // namespace brindlehum::cli
