// Where a file dialog starts.
#pragma once

#include <QString>
#include <filesystem>

namespace brindlehum {

class DiskWork;

// The folder, as text for a dialog; the home folder if the disk doesn't answer, since dialogs ask it on the main
// thread.
QString dialogStart(const std::filesystem::path& folder, DiskWork& disk);

}  // namespace brindlehum
