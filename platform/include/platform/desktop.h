// Desktop: the small requests to the desktop around us.
#pragma once

#include <filesystem>

namespace brindlehum {

// Main thread; failures are dropped, for the user sees that nothing came up.
class Desktop {
public:
    virtual ~Desktop() = default;
    // Opens a folder in the file manager.
    virtual void openFolder(const std::filesystem::path& folder) = 0;
    // Shows a file in its folder, selected.
    virtual void reveal(const std::filesystem::path& file) = 0;
};

}  // namespace brindlehum
