// AudioFile::open: chooses the library that reads a file by its content.
#include "audio/decode/audio_file.h"

#include "base/error.h"
#include "base/file_handle.h"
#include "base/path.h"
#include "decode/container_layout.h"
#include "decode/ffmpeg_file.h"
#include "decode/open_audio_file.h"
#include "decode/sndfile_file.h"

namespace brindlehum {

std::unique_ptr<AudioFile> AudioFile::open(const std::filesystem::path& path, const std::function<bool()>& stop) {
    return openAudioFile(std::make_shared<FileHandle>(path), path, stop);
}

std::unique_ptr<AudioFile> openAudioFile(const std::shared_ptr<FileHandle>& handle, const std::filesystem::path& path,
                                         const std::function<bool()>& stop) {
    if (handle->size() == 0) { throw Error(openFailure(path, "it is empty")); }
    const Container container = containerOf(*handle);
    // libsndfile would read these with less exact decoders, print warnings, or leak when it refuses a file.
    const bool ffmpegOnly = container == Container::mp4 || container == Container::packets;
    const bool namedRaw = path.extension() == ".mp3" || path.extension() == ".aac";
    if (container == Container::riff && lacksBitDepth(*handle)) {
        throw Error(openFailure(path, "its header doesn't say how many bits a sample has"));
    }
    std::unique_ptr<AudioFile> file;
    if (!ffmpegOnly) { file = openWithSndfile(handle, container, stop); }
    if (!file) { file = openWithFFmpeg(handle, container, namedRaw, stop); }
    if (!file) { throw Error(openFailure(path, "it holds no audio that can be read")); }
    return file;
}

}  // namespace brindlehum
