// The dialog in which the user chooses folders for the library.
#pragma once

#include <filesystem>
#include <vector>

class QWidget;

namespace brindlehum {

class DiskWork;

// Returns any number of folders, none if the user cancels.
std::vector<std::filesystem::path> chooseLibraryFolders(QWidget* parent, const std::filesystem::path& start,
                                                        DiskWork& disk);

}  // namespace brindlehum
