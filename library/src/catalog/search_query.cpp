// SearchQuery: parses typed text, and writes it as an FTS5 expression.
#include "catalog/search_query.h"

#include <QList>
#include <QString>
#include <algorithm>
#include <array>
#include <cctype>
#include <unordered_set>

#include "library/catalog/catalog.h"
#include "library/meta/sound_meta.h"

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

bool hasLetterOrDigit(std::string_view text) {
    const auto isAscii = [](char c) { return uint8_t(c) < 0x80; };
    if (std::ranges::all_of(text, isAscii)) {
        return std::ranges::any_of(text, [](char c) { return std::isalnum(uint8_t(c)) != 0; });
    }
    const auto letters = QString::fromUtf8(text.data(), qsizetype(text.size())).toUcs4();
    return std::ranges::any_of(letters, [](char32_t letter) {
        return QChar::isLetterOrNumber(letter) || QChar::category(letter) == QChar::Other_PrivateUse;
    });
}

bool sameLetters(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b,
                              [](char x, char y) { return std::tolower(uint8_t(x)) == std::tolower(uint8_t(y)); });
}

// Where the words of a token may stand.
struct Place {
    std::string column;
    std::string field;
};

// None for a name that isn't a field's.
std::optional<Place> placeOf(std::string_view name) {
    if (sameLetters(name, "name")) { return Place{"name", ""}; }
    if (sameLetters(name, "folder") || sameLetters(name, "folders")) { return Place{"folders", ""}; }
    for (const SoundMeta::Tag& tag : SoundMeta::ixmlTags) {
        if (tag.searched && sameLetters(name, tag.key)) { return Place{"body", std::string(tag.key)}; }
    }
    return std::nullopt;
}

struct Token {
    bool excludes = false;
    Place place;
    std::string_view text;
    bool isPhrase = false;
};

// Takes one token after another from typed text.
class Tokens {
public:
    explicit Tokens(std::string_view typed) : rest_(typed) {}

    std::optional<Token> next() {
        while (!rest_.empty() && spaceLength(rest_) != 0) { rest_.remove_prefix(spaceLength(rest_)); }
        if (rest_.empty()) { return std::nullopt; }
        Token token;
        token.excludes = rest_.starts_with('-') || rest_.starts_with("/-");
        if (token.excludes) { rest_.remove_prefix(rest_[0] == '-' ? 1 : 2); }
        takePlace(token);
        if (!takePhrase(token)) { token.text = takeUntilSpace(); }
        return token;
    }

private:
    void takePlace(Token& token) {
        const size_t colon = rest_.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ");
        if (colon == std::string_view::npos || rest_[colon] != ':') { return; }
        const std::optional<Place> place = placeOf(rest_.substr(0, colon));
        const std::string_view after = rest_.substr(colon + 1);
        if (!place || after.empty() || spaceLength(after) != 0) { return; }
        token.place = *place;
        rest_ = after;
    }
    // False when no quote mark begins here, or none ends it.
    bool takePhrase(Token& token) {
        const size_t end = rest_.starts_with('"') ? rest_.find('"', 1) : std::string_view::npos;
        if (end == std::string_view::npos || rest_.substr(0, end).find('\0') != std::string_view::npos) {
            return false;
        }
        token.text = rest_.substr(1, end - 1);
        token.isPhrase = true;
        rest_.remove_prefix(end + 1);
        return true;
    }
    std::string_view takeUntilSpace() {
        size_t end = 0;
        while (end < rest_.size() && spaceLength(rest_.substr(end)) == 0) { ++end; }
        const std::string_view text = rest_.substr(0, end);
        rest_.remove_prefix(end);
        return text;
    }

    std::string_view rest_;
};

std::vector<QueryWord> wordsOf(const Token& token) {
    std::vector<QueryWord> words;
    if (token.isPhrase) {
        if (hasLetterOrDigit(token.text)) { words.push_back({std::string(token.text), true}); }
        return words;
    }
    std::string word;
    const auto close = [&] {
        if (hasLetterOrDigit(word)) { words.push_back({word}); }
        word.clear();
    };
    for (size_t at = 0; at < token.text.size(); ++at) {
        const char c = token.text[at];
        if (token.text.substr(at).starts_with("/-")) {
            ++at;
        } else if (c == '-') {
            close();
        } else if (c != '"') {
            word += c;
        }
    }
    close();
    return words;
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

// FTS5 nests one NOT in another, and allows 256 levels at most. Beyond maxNots, one NOT holds all further alternatives
// at once, which excludes the same files.
constexpr size_t maxNots = 128;

std::string expression(const QueryWord& word) {
    if (word.holders.empty()) { return '"' + word.text + (word.isPhrase ? "\"" : "\"*"); }
    std::string any;
    for (const std::string& holder : word.holders) { any += (any.empty() ? "(\"" : " OR \"") + holder + '"'; }
    return any + ')';
}

std::string expression(const QueryTerm& term) {
    const bool isPlain = std::ranges::all_of(term.words, [](const QueryWord& word) { return word.holders.empty(); });
    std::string all;
    // FTS5 allows a blank in place of AND only between plain words.
    for (const QueryWord& word : term.words) { all += (all.empty() ? "" : isPlain ? " " : " AND ") + expression(word); }
    if (!term.column.empty()) { return term.column + " : (" + all + ')'; }
    return isPlain || term.words.size() == 1 ? all : '(' + all + ')';
}

std::string expression(const std::vector<QueryTerm>& group) {
    std::string any;
    for (const QueryTerm& term : group) { any += (any.empty() ? "" : " OR ") + expression(term); }
    return group.size() == 1 ? any : '(' + any + ')';
}

void dropRepeats(SearchQuery& query) {
    Repeats repeats;
    for (auto& group : query.wanted) {
        if (group.size() == 1 && group[0].column.empty()) {
            std::erase_if(group[0].words, [&](const QueryWord& word) { return repeats.tooMany(expression(word)); });
            if (group[0].words.empty()) { group.clear(); }
        } else if (repeats.tooMany(expression(group))) {
            group.clear();
        }
    }
    std::erase_if(query.wanted, [](const auto& group) { return group.empty(); });
}

bool hasField(const QueryTerm& term) {
    return !term.field.empty();
}

// Requires the field of a term, or the whole term if it has none.
std::pair<std::string, std::string> condition(const QueryTerm& term) {
    if (!hasField(term)) { return {"f.id IN (SELECT rowid FROM fts WHERE fts MATCH ?)", expression(term)}; }
    std::string words;
    for (const QueryWord& word : term.words) {
        std::string line = (word.isPhrase ? '=' : '*') + word.text;
        std::ranges::replace(line, '\n', ' ');  // a phrase may hold line breaks
        words += line + '\n';
    }
    return {"holds_words(iif(json_valid(f.meta), json_extract(f.meta, '$." + term.field + "'), ''), ?)", words};
}

}  // namespace

SearchQuery parseQuery(std::string_view typed) {
    SearchQuery query;
    bool joins = false;  // an OR stands before the next token
    Tokens tokens(typed);
    for (std::optional<Token> token = tokens.next(); token; token = tokens.next()) {
        const bool isOr = token->text == "OR" && !token->isPhrase && !token->excludes && token->place.column.empty();
        if (isOr && !query.wanted.empty()) {
            joins = true;
            continue;
        }
        QueryTerm term{token->place.column, token->place.field, wordsOf(*token)};
        if (term.words.empty()) { continue; }
        if (token->excludes) {
            query.excluded.push_back(std::move(term));
        } else if (joins) {
            query.wanted.back().push_back(std::move(term));
        } else {
            query.wanted.push_back({std::move(term)});
        }
        joins = false;
    }
    dropRepeats(query);
    return query;
}

std::optional<std::string> ftsExpression(const SearchQuery& query) {
    if (query.wanted.empty()) { return std::nullopt; }
    std::string all;
    for (const auto& group : query.wanted) { all += (all.empty() ? "" : " AND ") + expression(group); }
    size_t nots = 0;
    for (const QueryTerm& term : query.excluded) {
        if (hasField(term)) { continue; }
        all += nots < maxNots ? " NOT " : nots > maxNots ? " OR " : " NOT (";
        all += expression(term);
        ++nots;
    }
    return nots > maxNots ? all + ')' : all;
}

Conditions fieldConditions(const SearchQuery& query) {
    Conditions conditions;
    if (query.wanted.empty()) { return conditions; }
    for (const auto& group : query.wanted) {
        if (std::ranges::none_of(group, hasField)) { continue; }
        std::string any;
        std::vector<std::string> texts;
        for (const QueryTerm& term : group) {
            const auto [sql, text] = condition(term);
            any += (any.empty() ? "" : " OR ") + sql;
            texts.push_back(text);
        }
        conditions.add('(' + any + ')', texts);
    }
    for (const QueryTerm& term : query.excluded) {
        if (!hasField(term)) { continue; }
        const auto [sql, text] = condition(term);
        conditions.add("NOT " + sql, {text});
    }
    return conditions;
}

std::optional<std::string> Catalog::matchExpression(std::string_view query) {
    return ftsExpression(parseQuery(query));
}

}  // namespace brindlehum
