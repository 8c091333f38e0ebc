// How many instances an effect needs, and which channels each gets.
#include "monitor/inserts/insert_plan.h"

#include <algorithm>
#include <numeric>

namespace brindlehum {

std::vector<InsertShare> shares(int channels, int width) {
    std::vector<InsertShare> out;
    for (int first = 0; width > 0 && first < channels; first += width) {
        out.push_back({first, std::min(width, channels - first)});
    }
    return out;
}

int totalLatency(std::span<const InsertShape> chain) {
    return std::accumulate(chain.begin(), chain.end(), 0,
                           [](int sum, const InsertShape& each) { return sum + std::max(each.latency, 0); });
}

}  // namespace brindlehum
