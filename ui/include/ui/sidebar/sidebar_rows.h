// SidebarRows: the rows of the sidebar, as a pure function of a snapshot of the library.
#pragma once

#include <QString>
#include <array>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "library/catalog/catalog.h"

namespace brindlehum {

struct SidebarRow {
    enum class Kind { root, addFolder, category, library, place };
    Kind kind = Kind::root;
    QString text;
    QString icon;       // a symbol's name; empty for facets
    std::string value;  // path or facet
    std::optional<int64_t> count;
    bool selected = false;
    bool busy = false;  // a root that is being scanned
    QString problem;    // what is wrong with a root
    bool operator==(const SidebarRow&) const = default;
};

namespace SidebarRows {

enum Section { Library, Categories, Libraries, Places, SectionCount };
using Sections = std::array<std::vector<SidebarRow>, SectionCount>;

struct Snapshot {
    std::vector<std::string> roots;               // as the settings spell them
    std::vector<std::string> indexing;            // likewise
    std::map<std::string, std::string> problems;  // of roots
    std::vector<std::filesystem::path> places;
    Catalog::Counts categories;
    Catalog::Counts libraries;
    std::optional<std::string> category;  // the filters in force
    std::optional<std::string> library;
    std::optional<std::filesystem::path> folder;  // the folder shown; none while searching
};

QString sectionName(int section);
// Its name for the settings, the same in each language.
QString sectionKey(int section);
Sections build(const Snapshot& now);
// "drive" below the places where volumes are mounted, else `other`.
QString iconOf(const std::filesystem::path& path, const QString& other);
// The footer: "Indexing…", "12,345 files indexed", or nothing.
// "1 file", "1,204 files"
QString filesOf(int64_t count);
QString footer(bool indexing, int64_t indexed);
// The line below it during a scan: "1,204 of 5,310 files", or before all are `counted` "5,310 files found".
QString progress(bool counted, int64_t done, int64_t found);

}  // namespace SidebarRows
}  // namespace brindlehum
