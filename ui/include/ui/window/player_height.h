// PlayerHeight: how high the player is, as pure functions of what it shows and of the room that it has.
#pragma once

namespace brindlehum::PlayerHeight {

// All heights in logical pixels.
struct Room {
    int lanes = 1;            // of the waveform
    bool soundfield = false;  // shows the row that turns a sound field
    int available = 0;        // of the player and the browser together
};

inline constexpr int least = 170;
inline constexpr int leastWithSoundfield = 204;
// Of a lane in which its name is easily read.
inline constexpr int laneHeight = 14;
// The lanes alone never take more of the available height than this; the user may give the player more.
inline constexpr double largestShare = 0.55;

int minimum(const Room& room);
// Grows with the number of lanes, up to the largest share.
int automatic(const Room& room);
// The automatic height and what the user has added to it, or taken from it when `extra` is negative.
int withExtra(const Room& room, int extra);

}  // namespace brindlehum::PlayerHeight
