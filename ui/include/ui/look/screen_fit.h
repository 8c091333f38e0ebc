// Sizes of windows that fit the screen, however small it is or large the scale.
#pragma once

#include <QScreen>
#include <QWidget>

namespace brindlehum {

// Room for a window's frame and title bar, which aren't known before it is shown; logical pixels.
constexpr QSize frameRoom(20, 60);

// `wanted`, but never more than the screen has room for.
inline QSize fittingSize(const QWidget& window, QSize wanted) {
    return wanted.boundedTo(window.screen()->availableSize() - frameRoom);
}

}  // namespace brindlehum
