// Offers the preview first, and arms the grab for the rest.
#include "app/key_tap.h"

namespace brindlehum {

bool KeyTap::start() {
    if (isStarted_) { return hasGrab_ || previewer_; }
    isStarted_ = true;
    hasGrab_ = grab_ && grab_->start({[this](bool isRepeat, bool swallowed) {
                                          if (swallowed && spaceHandler) { spaceHandler(isRepeat); }
                                          if (!swallowed && finderInput) { finderInput(); }
                                      },
                                      [this] {
                                          if (onRefusal) { onRefusal(); }
                                      }});
    if (previewer_) {
        previewer_->start({[this](const std::filesystem::path& file, bool isRepeat) {
                               return showHandler && showHandler(file, isRepeat);
                           },
                           [this] { arm(); }});
    }
    arm();
    return hasGrab_ || previewer_;
}

void KeyTap::setTaken(bool taken, bool byPreview) {
    isTaken_ = taken;
    byPreview_ = byPreview;
    arm();
}

void KeyTap::arm() {
    if (!isStarted_) { return; }
    const bool offered = previewer_ && isTaken_ && byPreview_;
    if (previewer_) { previewer_->setOffered(offered); }
    if (!hasGrab_) { return; }
    const bool grabbed = isTaken_ && !(offered && previewer_->isOwned());
    grab_->setSwallows(grabbed);
    grab_->setArmed(grabbed);
}

}  // namespace brindlehum
