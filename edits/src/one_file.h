// Processes one file of a batch.
#pragma once

#include "edits/temp_edits.h"

namespace brindlehum::TempEdits {

using PlansKnown = std::function<void(size_t plans)>;

// Throws only what the two callbacks throw. Calls `plansKnown` before the first step of `progress`.
Outcome makeOne(const Job& job, const TempEditOptions& options, const TempEditExporter::Progress& progress,
                const PlansKnown& plansKnown, const std::stop_token& stop);

}  // namespace brindlehum::TempEdits
