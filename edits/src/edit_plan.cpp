// EditPlan: the raw values of its kinds.
#include "edits/edit_plan.h"

#include <array>

namespace brindlehum {

namespace {
constexpr std::array<std::string_view, 5> kinds = {"piece", "loop", "cutdown", "extended", "backtimed"};
}

std::string_view rawValue(EditPlan::Kind kind) {
    return kinds[size_t(kind)];
}

std::optional<EditPlan::Kind> editPlanKind(std::string_view raw) {
    for (size_t i = 0; i < kinds.size(); ++i) {
        if (kinds[i] == raw) { return EditPlan::Kind(i); }
    }
    return std::nullopt;
}

}  // namespace brindlehum
