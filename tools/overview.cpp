// overview FILE...: prints the waveform of each file as minima and maxima.
#include "audio/wave/waveform.h"
#include "base/stored_path.h"
#include "command.h"

namespace brindlehum::cli {

bool overview(Words words) {
    return eachFile(words, [](const std::string& file) {
        const WaveformPtr data = WaveformLoader::overview(file);
        print({
            {"url", storedPath(file)},
            {"channels", data->channels},
            {"bucketFrames", data->bucketFrames},
            {"bucketCount", data->bucketCount},
            {"loadedBuckets", data->loadedBuckets},
            {"mins", data->mins},
            {"maxs", data->maxs},
        });
    });
}

}  // namespace brindlehum::cli
