// The audio system of a Linux machine: PipeWire where it runs, the headless output where it doesn't.
#pragma once

#include <memory>

#include "platform/audio_system.h"
#include "platform/main_loop.h"

namespace brindlehum {

// Never fails. While no PipeWire server can be reached the only device is the headless output; each call looks for
// a server anew (bounded to half a second), and once one has come, streams on the headless output stop being
// current. `onChange` of the streams is called through `loop`, which outlives the system; so do the render targets.
std::unique_ptr<AudioSystem> makeAudioSystem(MainLoop& loop);

}  // namespace brindlehum
