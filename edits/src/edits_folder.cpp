// TempEditExporter: chooses the folder for the edits of a piece.
#include <fcntl.h>
#include <unistd.h>

#include "edits/temp_edit_exporter.h"

namespace brindlehum::TempEditExporter {

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

}  // namespace brindlehum::TempEditExporter
