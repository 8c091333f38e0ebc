// Catalog::matchExpression: turns typed text into an FTS5 query of quoted prefix terms.
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "library/catalog/catalog.h"

namespace brindlehum {

namespace {

// Unicode's White_Space beyond ASCII, in UTF-8.
constexpr std::string_view wideSpaces[] = {
    "\u0085", "\u00A0", "\u1680", "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006",
    "\u2007", "\u2008", "\u2009", "\u200A", "\u2028", "\u2029", "\u202F", "\u205F", "\u3000",
};

// The length in bytes of a leading white space in `text`. A NUL counts as one, since it would end the query for SQLite.
size_t spaceLength(std::string_view text) {
    const char c = text[0];
    if (c == ' ' || (c >= '\t' && c <= '\r') || c == '\0') { return 1; }
    for (const std::string_view space : wideSpaces) {
        if (text.starts_with(space)) { return space.size(); }
    }
    return 0;
}

std::vector<std::string_view> tokens(std::string_view query) {
    std::vector<std::string_view> all;
    size_t start = 0;
    for (size_t at = 0; at < query.size();) {
        const size_t space = spaceLength(query.substr(at));
        if (space != 0 && at > start) { all.push_back(query.substr(start, at - start)); }
        at += space != 0 ? space : 1;
        if (space != 0) { start = at; }
    }
    if (start < query.size()) { all.push_back(query.substr(start)); }
    return all;
}

// Limits the repeats of words: FTS5's ranking takes time in the square of the number of terms, so a page pasted into
// the search field would take hours. A repeated word finds no other files.
class Repeats {
public:
    bool tooMany(const std::string& word) { return !words_.insert(word).second && ++count_ > most; }

private:
    static constexpr size_t most = 64;
    std::unordered_set<std::string> words_;
    size_t count_ = 0;
};

// The token's words as quoted prefixes, joined by blanks; all must match. Empty when no word is left. `repeats` holds
// the words of earlier tokens, if all of them must match, else null.
std::string prefixTerms(std::string_view token, Repeats* repeats) {
    std::string terms;
    std::string word;
    const auto close = [&] {
        if (word.empty()) { return; }
        const bool isNeeded = repeats == nullptr || !repeats->tooMany(word);
        if (isNeeded) { terms += (terms.empty() ? "\"" : " \"") + word + "\"*"; }
        word.clear();
    };
    for (size_t at = 0; at < token.size(); ++at) {
        if (token.substr(at).starts_with("/-")) {
            ++at;
        } else if (token[at] == '-') {
            close();
        } else if (token[at] != '"') {
            word += token[at];
        }
    }
    close();
    return terms;
}

// FTS5 nests one NOT in another, and allows 256 levels at most. Beyond maxNots, one NOT holds all further alternatives
// at once, which excludes the same files.
constexpr size_t maxNots = 128;

}  // namespace

std::optional<std::string> Catalog::matchExpression(std::string_view query) {
    std::string expression;
    std::vector<std::string> excluded;
    Repeats wanted;
    for (const std::string_view token : tokens(query)) {
        const bool excludes = token.starts_with('-') || token.starts_with("/-");
        std::string terms = prefixTerms(token, excludes ? nullptr : &wanted);
        if (terms.empty()) { continue; }
        if (excludes) {
            excluded.push_back(std::move(terms));
        } else {
            expression += (expression.empty() ? "" : " AND ") + terms;
        }
    }
    if (expression.empty()) { return std::nullopt; }
    for (size_t i = 0; i < excluded.size(); ++i) {
        expression += i < maxNots ? " NOT " : i > maxNots ? " OR " : " NOT (";
        expression += excluded[i];
    }
    if (excluded.size() > maxNots) { expression += ')'; }
    return expression;
}

}  // namespace brindlehum
