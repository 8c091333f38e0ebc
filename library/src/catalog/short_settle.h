// Moves recently written files from `short_changed` into the blocks of `short_hits`.
#pragma once

#include "catalog/database.h"

namespace brindlehum {

// Call it in a transaction. If more than `allowed` files have changed, settles the blocks with the most changed files,
// at most `maxBlocks`. False when there was nothing to settle or a statement failed.
bool settleShortHits(const Database& database, int64_t allowed, int maxBlocks);

}  // namespace brindlehum
