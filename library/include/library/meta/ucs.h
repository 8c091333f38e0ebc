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
        std::string catID;  // as the list writes it
        std::string category;
        std::string subCategory;
    };

    // The list that comes with the application, read at the first call.
    static const UCS& shared();
    // From lines of "CatID,category,subcategory" behind a header line. There is no quoting; lines of fewer fields and
    // further fields are ignored, and of two lines with one CatID the later one holds.
    explicit UCS(std::string_view csv);

    // By the CatID in upper case.
    const std::unordered_map<std::string, Entry>& entries() const { return entries_; }
    // In any case of letters; null for a CatID that isn't listed.
    const Entry* lookup(std::string_view catID) const;

private:
    std::unordered_map<std::string, Entry> entries_;
};

}  // namespace brindlehum
