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
std::string resourceText() {
    loadResources();
    QFile file(":/UCS.csv");
    return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
}

}  // namespace

UCS::UCS(std::string_view csv) {
    bool header = true;
    for (const std::string_view rest : split(csv, "\r\n")) {
        if (rest.empty()) { continue; }
        if (std::exchange(header, false)) { continue; }
        const std::vector<std::string_view> fields = split(rest, ",");
        if (fields.size() < 3) { continue; }
        const Entry entry{std::string(trimmed(fields[0])), std::string(trimmed(fields[1])),
                          std::string(trimmed(fields[2]))};
        entries_[upperAscii(entry.catID)] = entry;
    }
}

const UCS& UCS::shared() {
    static const UCS list(resourceText());
    return list;
}

const UCS::Entry* UCS::lookup(std::string_view catID) const {
    const auto found = entries_.find(upperAscii(catID));
    return found == entries_.end() ? nullptr : &found->second;
}

}  // namespace brindlehum
