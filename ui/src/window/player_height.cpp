// The rule for the player's height.
#include "ui/window/player_height.h"

#include <algorithm>

namespace brindlehum::PlayerHeight {
namespace {

constexpr int lanesInLeast = 60;  // logical pixels that the lanes have at the least height

}  // namespace

int minimum(const Room& room) {
    return room.soundfield ? leastWithSoundfield : least;
}

int automatic(const Room& room) {
    const int wanted = minimum(room) + std::max(0, room.lanes * laneHeight - lanesInLeast);
    return std::max(minimum(room), std::min(wanted, int(largestShare * room.available)));
}

int withExtra(const Room& room, int extra) {
    return std::max(minimum(room), automatic(room) + extra);
}

}  // namespace brindlehum::PlayerHeight
