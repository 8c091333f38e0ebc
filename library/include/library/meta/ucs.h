// UCS: the category list of the Universal Category System (universalcategorysystem.com, public domain).
//
// A CatID such as AMBBird stands for a category and a subcategory. Immutable, any thread.
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>

namespace brindlehum {

class UCS {
public:
    struct Entry {
        std::string catID;  // as spelled in the list
        std::string category;
        std::string subCategory;
    };

    // The list that is built into the application; the first call reads it.
    static const UCS& shared();
    // Parses lines of "CatID,category,subcategory" after a header line, without quoting. Ignores lines with fewer
    // fields, and any further fields; if two lines have the same CatID, the later one wins.
    explicit UCS(std::string_view csv);

    // The key is the CatID in upper case.
    const std::unordered_map<std::string, Entry>& entries() const { return entries_; }
    // Ignores the case of letters; null for an unlisted CatID.
    const Entry* lookup(std::string_view catID) const;

private:
    std::unordered_map<std::string, Entry> entries_;
};

}  // namespace brindlehum
