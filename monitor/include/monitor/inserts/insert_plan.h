// InsertPlan: how the channels of a room pass through a chain of effects of other widths.
#pragma once

#include <span>
#include <vector>

// Pure; any thread.
namespace brindlehum {

// One effect: its audio ports of either direction, and the frames by which it delays.
struct InsertShape {
    int width = 0;
    int latency = 0;
};

// The channels that one instance gets, at its first ports. Its others hear silence.
struct InsertShare {
    int first = 0;
    int count = 0;
    bool operator==(const InsertShare&) const = default;
};

// Instances of one effect side by side, which carry all channels.
std::vector<InsertShare> shares(int channels, int width);
// The frames by which the whole chain delays. A bypassed effect delays, too, so that nothing jumps.
int totalLatency(std::span<const InsertShape> chain);

}  // namespace brindlehum
