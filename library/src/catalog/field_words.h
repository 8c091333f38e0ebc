// The SQL function holds_words(text, words): whether a metadata field holds the words of a query.
#pragma once

#include "catalog/database.h"

namespace brindlehum {

// Defines it on the connection. `words` has a line for each: '*' before a prefix, '=' before a phrase of whole words.
// Both texts are split as the full-text table splits them. Throws Error (catalog).
void defineHoldsWords(Database& database);

}  // namespace brindlehum
