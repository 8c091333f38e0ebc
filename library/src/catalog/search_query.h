// SearchQuery: what a user typed to find sounds, as groups of terms.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "catalog/conditions.h"

namespace brindlehum {

struct QueryWord {
    std::string text;                       // UTF-8, with a letter or digit, without quote marks
    bool isPhrase = false;                  // its words must follow each other and be whole; otherwise it is a prefix
    std::vector<std::string> holders = {};  // index words that hold `text`; when given, they stand in its place
};

// All words must match, in one column when one is given.
struct QueryTerm {
    std::string column;  // of the full-text table; empty for any
    std::string field;   // the JSON key of the metadata field that must hold the words; empty for none
    std::vector<QueryWord> words;
};

// Every group of `wanted` must match by one of its terms, and no term of `excluded`.
struct SearchQuery {
    std::vector<std::vector<QueryTerm>> wanted;
    std::vector<QueryTerm> excluded;
};

// Tokens are separated by white space; a token may begin with '-' or "/-", which excludes, and with a field's name and
// a colon. A dash within a token separates two words, text in quote marks is a phrase, OR joins the tokens beside it.
// Words without a letter or digit are dropped.
SearchQuery parseQuery(std::string_view typed);

// The full-text expression; none when nothing is wanted.
std::optional<std::string> ftsExpression(const SearchQuery& query);

// What the expression can't say: which metadata field must hold a word. Empty when nothing is wanted.
Conditions fieldConditions(const SearchQuery& query);

}  // namespace brindlehum
