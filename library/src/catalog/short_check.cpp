// Short check: compares whole rankings of a few beginnings that have few hits, so that it takes milliseconds.
#include "catalog/short_check.h"

#include <optional>
#include <string>
#include <vector>

#include "catalog/ranked.h"
#include "catalog/short_hits.h"
#include "catalog/short_search.h"

namespace brindlehum {

namespace {

constexpr int beginnings = 4;
constexpr int most = 2000;

void append(std::string& text, uint32_t letter) {
    if (letter < 0x80) {
        text += char(letter);
    } else if (letter != 0) {
        text += char(0xC0 | letter >> 6);
        text += char(0x80 | (letter & 0x3F));
    }
}

std::string expressionFor(Letters letters) {
    std::string text = "\"";
    append(text, letters >> 11);
    if ((letters & 0x7FF) != 0) { append(text, letters & 0x7FF); }
    return text + "\"*";
}

// None while nothing can be compared.
std::optional<bool> ranksEqually(const Database& database) {
    Statement rarest(database, "SELECT id FROM short_hits WHERE id < ? ORDER BY length(hits), id LIMIT ?");
    std::optional<bool> agree;
    for (rarest.bind(int64_t(1) << lettersBits, beginnings); rarest.step();) {
        const std::string expression = expressionFor(Letters(rarest.integer(0)));
        const auto ours = rankShort(database, expression, most, std::nullopt);
        const auto theirs = rankByEngine(database, expression, most);
        if (!ours || !theirs) { return std::nullopt; }
        if (*ours != *theirs) { return false; }
        agree = true;
    }
    return agree;
}

}  // namespace

bool ShortCheck::passes(const Database& database) {
    if (result_ == Result::unknown) {
        const std::optional<bool> equal = ranksEqually(database);
        if (equal) { result_ = *equal ? Result::equal : Result::different; }
    }
    return result_ != Result::different;
}

}  // namespace brindlehum
