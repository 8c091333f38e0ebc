// HUDPlacement: where the audition panel lies, as a pure function of the file manager's window and the screens.
#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "platform/screen_rect.h"

namespace brindlehum::HUDPlacement {

// Logical pixels.
inline constexpr int height = 168;
inline constexpr int soundfieldHeight = 204;  // with the row that turns a sound field
inline constexpr int leastWidth = 600;
inline constexpr int gap = 2;      // below the window
inline constexpr int overlap = 6;  // above the window's lower edge, where there is no room below

struct Screen {
    ScreenRect frame;
    ScreenRect available;  // without the desktop's own bars
    double scale = 1;      // device pixels of a logical one
};

struct Place {
    ScreenRect frame;
    size_t screen = 0;
};

// Right below the window on the screen that shows most of it, and as wide; over the window's lower edge where there is
// no room below. The first screen serves a window that is on none. None without a screen.
std::optional<Place> of(const ScreenRect& window, bool isAmbisonic, std::span<const Screen> screens);

}  // namespace brindlehum::HUDPlacement
