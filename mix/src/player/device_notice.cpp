// DeviceNotice: words the change.
#include "mix/player/device_notice.h"

#include "platform/headless_audio.h"

namespace brindlehum {

void DeviceNotice::withdraw() {
    if (said_ && message_.text() == said_) { message_.clear(); }
}

void DeviceNotice::tell(const AudioOutputDevice& before) {
    const AudioOutputDevice& now = engine_.device();
    if (now.uid == before.uid || engine_.devices().server() != SoundServer::running || message_.text()) { return; }
    const bool wasHeard = before.uid != HeadlessAudioSystem::uid;
    said_ = "Sound now goes to " + now.name + (wasHeard ? ", no longer to " + before.name : "");
    message_.notify(*said_);
}

}  // namespace brindlehum
