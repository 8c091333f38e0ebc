// Choice: the most likely hypothesis, and how likely it is.
#pragma once

#include <optional>
#include <span>

#include "bars/evidence.h"

namespace brindlehum::bars {

struct Choice {
    size_t index = 0;
    double likelihood = 0;  // 0 to 1, softmax of the weighted sums
};
// The first of the best ones; none without hypotheses.
std::optional<Choice> choose(std::span<const Hypothesis> hypotheses);

}  // namespace brindlehum::bars
