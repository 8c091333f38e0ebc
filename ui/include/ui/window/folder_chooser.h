// The dialog in which the user chooses folders for the library.
#pragma once

#include <filesystem>
#include <vector>

class QWidget;

namespace brindlehum {

// Folders only, any number; none when the user thinks better of it.
std::vector<std::filesystem::path> chooseLibraryFolders(QWidget* parent, const std::filesystem::path& start);

}  // namespace brindlehum
