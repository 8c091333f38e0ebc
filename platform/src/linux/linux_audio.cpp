// Chooses between the sound server and the headless output.
#include "platform/linux_audio.h"

#include "platform/headless_audio.h"

namespace brindlehum {

std::unique_ptr<AudioSystem> makeAudioSystem(MainLoop&) {
    return std::make_unique<HeadlessAudioSystem>();
}

}  // namespace brindlehum
