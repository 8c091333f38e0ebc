// UCS: loads the list from a resource of the application and finds entries by CatID.
#include "library/meta/ucs.h"

#include <QFile>
#include <utility>
#include <vector>

#include "base/text.h"

// Qt requires this outside of any namespace. Without the call, a static library's resource isn't linked in.
static void loadResources() {
    Q_INIT_RESOURCE(library);
}

namespace brindlehum {

namespace {

// Without the file, every look-up finds nothing; nothing else depends on it.
std::string resourceText(const char* name) {
    loadResources();
    QFile file(name);
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
}

// The lines after the header, as their fields.
std::vector<std::vector<std::string_view>> rowsOf(std::string_view csv) {
    std::vector<std::vector<std::string_view>> rows;
    bool header = true;
    for (const std::string_view line : split(csv, "\r\n")) {
        if (line.empty() || std::exchange(header, false)) { continue; }
        rows.push_back(split(line, ","));
    }
    return rows;
}

}  // namespace

UCS::UCS(std::string_view csv, std::string_view synonyms) {
    for (const auto& fields : rowsOf(csv)) {
        if (fields.size() < 3) { continue; }
        const Entry entry{std::string(trimmed(fields[0])), std::string(trimmed(fields[1])),
                          std::string(trimmed(fields[2]))};
        entries_[upperAscii(entry.catID)] = entry;
    }
    addSynonyms(synonyms);
}

void UCS::addSynonyms(std::string_view csv) {
    for (const auto& fields : rowsOf(csv)) {
        if (fields.size() < 2) { continue; }
        const std::string key = upperAscii(trimmed(fields[0]));
        const std::string words = upperAscii(trimmed(fields[1]));
        if (const auto found = entries_.find(key); found != entries_.end()) { found->second.words = words; }
        for (auto& [catID, entry] : entries_) {
            if (upperAscii(entry.category) == key) { entry.categoryWords = words; }
        }
    }
}

const UCS& UCS::shared() {
    static const UCS list(resourceText(":/UCS.csv"), resourceText(":/UCSWords.csv"));
    return list;
}

const UCS::Entry* UCS::lookup(std::string_view catID) const {
    const auto found = entries_.find(upperAscii(catID));
    return found == entries_.end() ? nullptr : &found->second;
}

}  // namespace brindlehum
