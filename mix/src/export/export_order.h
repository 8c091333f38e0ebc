// ExportOrder: which of the waiting exports begins next.
#pragma once

#include <cstddef>
#include <optional>
#include <span>

namespace brindlehum {

struct ExportStanding {
    bool isStopped = false;  // only has to end
    bool isHeld = false;     // a pointer may carry it already
    bool isShort = false;
    bool isBlocked = false;  // another writes a file of the same name
};

// The index of the one that a free thread should begin: stopped ones end first; short ones go before long ones, and
// those that are held before the others; else the earliest. Long ones run one at a time, so that they leave a thread to
// the short ones; `longRuns` says that one does. Null when none may begin.
std::optional<size_t> nextExport(std::span<const ExportStanding> waiting, bool longRuns);

}  // namespace brindlehum
