// devices: lists the outputs of this machine, in the system's order.
#include <QCoreApplication>
#include <clocale>

#include "command.h"
#include "mix/engine/audio_devices.h"
#include "platform/linux_audio.h"
#include "platform/qt_main_loop.h"

namespace brindlehum::cli {

bool devices(Words words) {
    if (!words.empty()) { throw UsageError("unknown word \"" + words[0] + "\""); }
    int argumentCount = 1;
    char name[] = "brindlehum-cli";
    char* arguments[] = {name, nullptr};
    const QCoreApplication application(argumentCount, arguments);
    std::setlocale(LC_NUMERIC, "C");  // Qt has set the user's
    QtMainLoop loop;
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
