// Finds entries of the category list for names and for words that are being typed.
#include <algorithm>
#include <optional>
#include <tuple>

#include "base/text.h"
#include "library/meta/ucs.h"

namespace brindlehum {
namespace {

using Words = std::vector<std::string_view>;

// Where a typed word was found; the smaller, the more likely it's what the user means.
enum Place { wholeCatID, startOfCatID, subCategory, category, synonym, categorySynonym };
// The second number is 0 for a whole word and 1 for the beginning of one.
using Rank = std::pair<Place, int>;

Words wordsOf(std::string_view text) {
    Words words = split(text, " \t-_/&,.");
    std::erase_if(words, [](std::string_view word) { return word.empty(); });
    return words;
}

std::optional<Rank> rankIn(std::string_view text, std::string_view typed, Place place) {
    std::optional<Rank> best;
    for (const std::string_view word : wordsOf(text)) {
        if (word == typed) { return Rank(place, 0); }
        if (word.starts_with(typed)) { best = Rank(place, 1); }
    }
    return best;
}

std::optional<Rank> rankOf(const UCS::Entry& entry, const std::string& catID, std::string_view typed) {
    if (catID == typed) { return Rank(wholeCatID, 0); }
    if (catID.starts_with(typed)) { return Rank(startOfCatID, 1); }
    for (const auto& [text, place] : {std::pair<std::string_view, Place>(entry.subCategory, subCategory),
                                      {entry.category, category},
                                      {entry.words, synonym},
                                      {entry.categoryWords, categorySynonym}}) {
        if (const auto rank = rankIn(text, typed, place)) { return rank; }
    }
    return std::nullopt;
}

// The rank of the word that fits least.
std::optional<Rank> rankOf(const UCS::Entry& entry, const std::string& catID, const Words& typed) {
    Rank worst(wholeCatID, 0);
    for (const std::string_view word : typed) {
        const auto rank = rankOf(entry, catID, word);
        if (!rank) { return std::nullopt; }
        worst = std::max(worst, *rank);
    }
    return worst;
}

}  // namespace

const UCS::Entry* UCS::find(std::string_view category, std::string_view subCategory) const {
    const std::string wanted = upperAscii(trimmed(category));
    const std::string wantedSub = upperAscii(trimmed(subCategory));
    for (const auto& [key, entry] : entries_) {
        if (upperAscii(entry.category) == wanted && upperAscii(entry.subCategory) == wantedSub) { return &entry; }
    }
    return nullptr;
}

std::vector<const UCS::Entry*> UCS::matches(std::string_view typed) const {
    const std::string text = upperAscii(typed);
    const Words words = wordsOf(text);
    std::vector<std::pair<Rank, const Entry*>> found;
    for (const auto& [catID, entry] : entries_) {
        if (const auto rank = rankOf(entry, catID, words)) { found.emplace_back(*rank, &entry); }
    }
    std::ranges::sort(found, [](const auto& a, const auto& b) {
        const auto key = [](const auto& item) {
            const Entry& entry = *item.second;
            return std::tie(item.first, entry.category, entry.subCategory, entry.catID);
        };
        return key(a) < key(b);
    });
    std::vector<const Entry*> entries;
    for (const auto& item : found) { entries.push_back(item.second); }
    return entries;
}

}  // namespace brindlehum
