// KeyTap: Space pressed in the file manager, however it reaches us: as a request to preview a file, or by a key grab.
#pragma once

#include <filesystem>
#include <functional>

#include "platform/file_previewer.h"
#include "platform/key_grab.h"

namespace brindlehum {

// Main thread. Either way may be missing.
class KeyTap {
public:
    KeyTap(KeyGrab* grab, FilePreviewer* previewer) : grab_(grab), previewer_(previewer) {}

    // Space went down in the file manager, and is taken from it.
    std::function<void(bool isRepeat)> spaceHandler;
    // The file manager asks for this file to be shown, since Space went down. False: not ours.
    std::function<bool(const std::filesystem::path& file, bool isRepeat)> showHandler;
    // A key went to the file manager that may change its selection.
    std::function<void()> finderInput;
    std::function<void()> onRefusal;  // isRefused has changed

    // True if one of the ways works. A second call changes nothing.
    bool start();
    // From now on Space is to be taken, or left to the file manager. `byPreview`: it asks the previewer for Space. The
    // grab is armed only where that doesn't serve, so that no key waits for us without need.
    void setTaken(bool taken, bool byPreview);
    // Another program holds the key, so Space can't be taken.
    bool isRefused() const { return grab_ && grab_->isRefused(); }

private:
    void arm();

    KeyGrab* grab_;
    FilePreviewer* previewer_;
    bool isStarted_ = false;
    bool hasGrab_ = false;
    bool isTaken_ = false;
    bool byPreview_ = false;
};

}  // namespace brindlehum
