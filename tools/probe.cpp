// probe FILE...: prints the facts of each file without playing it.
#include "audio/probe/audio_file_info.h"
#include "base/stored_path.h"
#include "command.h"
#include "format_json.h"

namespace brindlehum::cli {

bool probe(Words words) {
    return eachFile(words, [](const std::string& file) {
        const AudioFileInfo info = AudioFileInfo::load(file);
        print({
            {"url", storedPath(info.url)},
            {"sampleRate", info.sampleRate},
            {"channels", info.channels},
            {"frames", info.frames},
            {"bitDepth", info.bitDepth},
            {"isFloat", info.isFloat},
            {"codec", info.codec},
            {"labels", info.labels},
            {"detected", toJson(info.detected)},
            {"bextDescription", info.bextDescription ? Json(*info.bextDescription) : Json()},
        });
    });
}

}  // namespace brindlehum::cli
