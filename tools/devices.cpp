// devices: the outputs of this machine, in the order the system gives them.
#include "mix/audio_devices.h"

#include "command.h"
#include "platform/linux_audio.h"
#include "platform/manual_main_loop.h"

namespace brindlehum::cli {

bool devices(Words words) {
    if (!words.empty()) throw UsageError("unknown word \"" + words[0] + "\"");
    ManualMainLoop loop;  // no stream is opened, so nothing is ever posted to it
    const auto system = makeAudioSystem(loop);
    const AudioDevices list(*system);
    for (const AudioOutputDevice& device : list.allOutputs()) {
        print({
            {"id", device.id},
            {"uid", device.uid},
            {"name", device.name},
            {"outputChannels", device.outputChannels},
            {"isDefault", list.defaultOutput() == device.id},
        });
    }
    return true;
}

}  // namespace brindlehum::cli
