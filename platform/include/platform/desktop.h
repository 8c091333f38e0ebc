// Desktop: the small requests to the desktop around us.
#pragma once

#include <filesystem>
#include <vector>

namespace brindlehum {

// Main thread; failures are dropped, for the user sees that nothing came up.
class Desktop {
public:
    virtual ~Desktop() = default;
    // Opens a folder in the file manager.
    virtual void openFolder(const std::filesystem::path& folder) = 0;
    // Shows files or folders where they lie, selected; nothing for none.
    virtual void reveal(const std::vector<std::filesystem::path>& items) = 0;
};

}  // namespace brindlehum
