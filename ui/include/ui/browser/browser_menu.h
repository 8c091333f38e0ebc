// The context menu of the browser's selection; entries whose operation isn't there are left out, and what folders alone
// don't take is disabled.
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
    std::function<void(const Files&)> reveal;
    std::function<void(const Files&)> copyPath;
};

// `files` are the selected ones in the order of their rows, at least one.
void fillBrowserMenu(QMenu& menu, const BrowserActions::Files& files, const BrowserActions& actions);

}  // namespace brindlehum
