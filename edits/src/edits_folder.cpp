// TempEditExporter: chooses the folder for the edits of a piece.
#include <fcntl.h>
#include <unistd.h>

#include <fstream>
#include <optional>

#include "edits/temp_edit_exporter.h"
#include "edits_record.h"

namespace brindlehum::TempEditExporter {
namespace {

namespace fs = std::filesystem;

// A version without a record named the piece in the sheet alone.
std::optional<fs::path> sourceInSheet(const fs::path& folder, const std::string& base) {
    constexpr std::string_view start = "Source: ";
    std::ifstream sheet(folder / (base + " - Edit Notes.txt"));
    std::string line;
    std::getline(sheet, line);
    if (!line.starts_with(sheetMark) || !std::getline(sheet, line) || !line.starts_with(start)) { return std::nullopt; }
    return line.substr(start.size());
}

bool holdsAnother(const fs::path& folder, const fs::path& source) {
    auto held = EditsRecord(folder).source();
    if (!held) { held = sourceInSheet(folder, source.stem()); }
    if (!held || *held == source) { return false; }
    const bool isBeside = folder.parent_path() == source.parent_path();
    return !isBeside || held->filename() != source.filename();
}

}  // namespace

std::filesystem::path editsFolder(const std::filesystem::path& source, bool besideSource,
                                  const std::filesystem::path& pullsFolder) {
    std::filesystem::path name = source.stem();
    name += " Edits";
    const std::filesystem::path folder = source.has_parent_path() ? source.parent_path() : ".";
    // Ask the system, since a read-only file system refuses everybody, whatever the mode bits say.
    const bool writable = ::faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
    if (besideSource && writable) { return source.parent_path() / name; }
    return pullsFolder / "Edits" / name;
}

fs::path folderFor(const fs::path& source, const fs::path& folder) {
    if (!holdsAnother(folder, source)) { return folder; }
    const fs::path longer = folder.parent_path() / (source.filename().string() + " Edits");
    fs::path other = longer;
    for (int number = 2; holdsAnother(other, source); ++number) {
        other = longer.string() + " " + std::to_string(number);
    }
    return other;
}

}  // namespace brindlehum::TempEditExporter
