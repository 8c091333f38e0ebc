// UCS: the category list of the Universal Category System (universalcategorysystem.com, public domain).
//
// A CatID such as AMBBird stands for a category and a subcategory. Immutable, any thread.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace brindlehum {

class UCS {
public:
    struct Entry {
        std::string catID;  // as spelled in the list
        std::string category;
        std::string subCategory;
        std::string words = {};          // synonyms of the entry, in upper case, with blanks between
        std::string categoryWords = {};  // those of its category
    };

    // The list that is built into the application; the first call reads it.
    static const UCS& shared();
    // Parses lines of "CatID,category,subcategory" after a header line, without quoting. Ignores lines with fewer
    // fields, and any further fields; if two lines have the same CatID, the later one wins. `synonyms` are lines of
    // "CatID or category,words" after a header line.
    explicit UCS(std::string_view csv, std::string_view synonyms = {});

    // The key is the CatID in upper case.
    const std::unordered_map<std::string, Entry>& entries() const { return entries_; }
    // Ignores the case of letters; null for an unlisted CatID.
    const Entry* lookup(std::string_view catID) const;
    // The entry with these two names, whatever the case of their letters; null if there is none.
    const Entry* find(std::string_view category, std::string_view subCategory) const;
    // Entries for what somebody has typed so far, the best first. Each typed word must begin the CatID or a word of the
    // category, the subcategory or the synonyms; the beginning of a CatID comes first. Without words, all entries.
    std::vector<const Entry*> matches(std::string_view typed) const;

private:
    void addSynonyms(std::string_view csv);

    std::unordered_map<std::string, Entry> entries_;
};

}  // namespace brindlehum
