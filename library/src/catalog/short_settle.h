// Moves files that were written lately from `short_changed` into the blocks of `short_hits`.
#pragma once

#include "catalog/database.h"

namespace brindlehum {

// Inside of a transaction. Settles the blocks with the most changed files, at most `maxBlocks`, if more than `allowed`
// files have changed; false when there was nothing to settle or a statement failed.
bool settleShortHits(const Database& database, int64_t allowed, int maxBlocks);

}  // namespace brindlehum
