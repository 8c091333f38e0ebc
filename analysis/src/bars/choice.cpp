#include "bars/choice.h"

#include <algorithm>
#include <cmath>

#include "bars/weights.h"

namespace brindlehum::bars {
namespace {

double score(const Hypothesis& hypothesis) {
    double sum = 0;
    for (size_t i = 0; i < evidenceCount; ++i) { sum += weights[i].perUnit * hypothesis.evidence[i]; }
    return sum;
}

}  // namespace

std::optional<Choice> choose(std::span<const Hypothesis> hypotheses) {
    if (hypotheses.empty()) { return std::nullopt; }
    std::vector<double> scores(hypotheses.size());
    std::ranges::transform(hypotheses, scores.begin(), score);
    const auto best = std::ranges::max_element(scores);
    double total = 0;
    for (const double s : scores) { total += std::exp(s - *best); }
    return Choice{size_t(best - scores.begin()), 1 / total};
}

}  // namespace brindlehum::bars
