// The audio system of a Linux machine: PipeWire if it runs, else the headless output.
#pragma once

#include <memory>

#include "platform/audio_system.h"
#include "platform/main_loop.h"

namespace brindlehum {

// Never fails. While no PipeWire server can be reached, the only device is the headless output. Each call then looks
// for a server again (for at most half a second); once there is one, streams on the headless output stop being current.
// Streams call `onChange` through `loop`. `loop` and the render targets must outlive the system.
std::unique_ptr<AudioSystem> makeAudioSystem(MainLoop& loop);

}  // namespace brindlehum
