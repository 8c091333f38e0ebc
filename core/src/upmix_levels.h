// Levels of the direct part and of the ambience in each output, measured in one hop of six.
#pragma once

#include "upmix_state.h"

namespace brindlehum::core {

// Decides whether this hop is measured.
void beginLevels(mn_upmix& u);
// While pair p's split is in `u`. Overwrites the scratch of exact plans.
void measurePair(mn_upmix& u, const mn_upmix_plan& plan, int32_t p);
// Counts as direct.
void measureRoute(mn_upmix& u, int32_t output, ConstSpectrum spectrum, float gain);
// Raises the peaks that the control side takes.
void publishLevels(mn_upmix& u);

}  // namespace brindlehum::core
