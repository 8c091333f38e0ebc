// ExportOrder: ranks the waiting exports.
#include "export_order.h"

#include <algorithm>

namespace brindlehum {
namespace {

constexpr int mayNotBegin = 4;

int rank(const ExportStanding& one, bool longRuns) {
    if (one.isStopped) { return 0; }
    if (one.isBlocked) { return mayNotBegin; }
    if (!one.isShort) { return longRuns ? mayNotBegin : 3; }
    return one.isHeld ? 1 : 2;
}

}  // namespace

std::optional<size_t> nextExport(std::span<const ExportStanding> waiting, bool longRuns) {
    const auto ranked = [&](const ExportStanding& one) { return rank(one, longRuns); };
    const auto best = std::ranges::min_element(waiting, {}, ranked);
    if (best == waiting.end() || ranked(*best) == mayNotBegin) { return std::nullopt; }
    return size_t(best - waiting.begin());
}

}  // namespace brindlehum
