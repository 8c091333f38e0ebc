// search WORDS... and facets: list the sounds of a catalog, in the browser's order and with its counts.
#include "base/error.h"
#include "base/stored_path.h"
#include "command.h"
#include "format_json.h"
#include "library_words.h"

namespace brindlehum::cli {
namespace {

constexpr int maxRows = 2000;  // the browser's limit

std::unique_ptr<Catalog> existing(const LibraryWords& library) {
    auto catalog = library.openExisting();
    if (!catalog) { throw Error("catalog " + library.catalogFile.string() + ": no such file; scan a folder first"); }
    return catalog;
}

Json toJson(const Catalog::Counts& counts) {
    Json json = Json::array();
    for (const auto& [name, count] : counts) { json.push_back({{"name", name}, {"count", count}}); }
    return json;
}

}  // namespace

bool search(Words words) {
    const LibraryWords library = libraryWords(words);
    if (library.rest.empty()) { throw UsageError("no words given"); }
    Catalog::Filter filter;
    for (const std::string& word : library.rest) { filter.query.append(word).append(" "); }
    if (!Catalog::matchExpression(filter.query)) {
        throw UsageError("no word to search for, as exclusions alone find nothing");
    }
    for (const Catalog::Row& row : existing(library)->search(filter, maxRows)) {
        print({
            {"path", storedPath(row.path)},
            {"root", storedPath(row.root)},
            {"duration", row.duration},
            {"sampleRate", row.sampleRate},
            {"channels", row.channels},
            {"bits", row.bits},
            {"codec", row.codec},
            {"meta", toJson(row.meta)},
        });
    }
    return true;
}

bool facets(Words words) {
    const LibraryWords library = libraryWords(words);
    if (!library.rest.empty()) { throw UsageError("unknown word \"" + library.rest[0] + "\""); }
    const Catalog::Facets facets = existing(library)->facets({});
    print({
        {"total", facets.total},
        {"categories", toJson(facets.categories)},
        {"libraries", toJson(facets.libraries)},
    });
    return true;
}

}  // namespace brindlehum::cli
