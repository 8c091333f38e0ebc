// FilePreviewer: stands in for the desktop's previewer, which file managers ask to show a file when Space is pressed.
#pragma once

#include <filesystem>
#include <functional>

namespace brindlehum {

// Main thread.
class FilePreviewer {
public:
    struct Heard {
        // Space on this file. False: not for us, so the desktop's own previewer is asked instead.
        std::function<bool(const std::filesystem::path& file, bool isRepeat)> show;
        std::function<void()> ownership;  // isOwned has changed
    };
    virtual ~FilePreviewer() = default;
    virtual void start(Heard heard) = 0;
    // While this is on, requests come to us once the desktop's previewer, if it runs, has ended.
    virtual void setOffered(bool offered) = 0;
    // Requests come to us now.
    virtual bool isOwned() const = 0;
};

}  // namespace brindlehum
