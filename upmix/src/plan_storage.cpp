// UpmixPlanStorage: pointers into the plan's lists.
#include "plan_storage.h"

#include <utility>

namespace brindlehum {
namespace {

template <typename T>
const T* listOf(const std::vector<T>& list) {
    return list.empty() ? nullptr : list.data();
}

mn_upmix_plan recordOf(const UpmixPlan& plan) {
    return {.pairs = int32_t(plan.pairIn.size() / 2),
            .pair_in = listOf(plan.pairIn),
            .pan_steps = plan.panSteps,
            .direct = listOf(plan.direct),
            .amb_l = listOf(plan.ambL),
            .amb_r = listOf(plan.ambR),
            .curve = listOf(plan.curve),
            .decor_re = listOf(plan.decorRe),
            .decor_im = listOf(plan.decorIm),
            .kappa = listOf(plan.kappa),
            .exact = plan.exact ? 1 : 0,
            .own_l = listOf(plan.ownL),
            .own_r = listOf(plan.ownR),
            .fold_l = listOf(plan.foldL),
            .fold_r = listOf(plan.foldR),
            .routes = int32_t(plan.routeIn.size()),
            .route_in = listOf(plan.routeIn),
            .route_out = listOf(plan.routeOut),
            .route_gain = listOf(plan.routeGain),
            .lfe_out = plan.lfeOut,
            .lfe_gain = plan.lfeGain,
            .lfe_lp = listOf(plan.lfeLP),
            .main_hp = listOf(plan.mainHP),
            .delay = listOf(plan.delay),
            .home = listOf(plan.home)};
}

}  // namespace

UpmixPlanStorage::UpmixPlanStorage(UpmixPlan plan) : plan_(std::move(plan)), record_(recordOf(plan_)) {}

}  // namespace brindlehum
