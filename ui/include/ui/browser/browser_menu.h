// The context menu of the browser's selection. It leaves out entries whose action is null and disables those that need
// a sound when only folders are selected.
#pragma once

#include <filesystem>
#include <functional>
#include <vector>

class QMenu;

namespace brindlehum {

struct BrowserActions {
    using Files = std::vector<std::filesystem::path>;
    std::function<void(const std::filesystem::path&)> openInEditor;
    std::function<void(const Files&)> makeTempEdits;
    std::function<void(const std::filesystem::path&)> setBars;  // of one piece
    std::function<void(const Files&)> renameToUCS;
    std::function<void(const Files&)> reveal;
    std::function<void(const Files&)> copyPath;
};

// `files` are the selected files in the order of their rows, at least one.
void fillBrowserMenu(QMenu& menu, const BrowserActions::Files& files, const BrowserActions& actions);

}  // namespace brindlehum
