// ScreenRect: where a window or a screen lies.
#pragma once

namespace brindlehum {

// In device pixels of the whole desktop; the origin is its upper left corner, y grows downwards.
struct ScreenRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    bool operator==(const ScreenRect&) const = default;
};

}  // namespace brindlehum
