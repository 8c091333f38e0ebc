// The words of the full-text index, for a search whose words begin none of them.
#pragma once

#include "catalog/database.h"
#include "catalog/search_query.h"

namespace brindlehum {

// Where a wanted word of three letters or more begins no word of the index, puts the words that hold it in its place,
// 64 at most. True when that changed the query. Reads the whole index for each such word. Call it in a read
// transaction.
bool widenToParts(Database& database, SearchQuery& query);

}  // namespace brindlehum
