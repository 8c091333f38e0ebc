// SliceReader: reads sound files in slices on all cores, and keeps some slices ahead of the one that is taken.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

#include "audio/probe/audio_file_info.h"
#include "library/catalog/catalog.h"
#include "library/meta/sound_meta.h"

namespace brindlehum {

struct FoundFile {
    std::string path;
    Catalog::Stamp stamp;
};

struct ReadFile {
    FoundFile file;
    std::optional<AudioFileInfo> info;  // none when it can't be probed
    SoundMeta meta;
};

ReadFile readSoundFile(FoundFile file);

// One thread.
class SliceReader {
public:
    SliceReader(std::vector<FoundFile> files, size_t filesASlice, std::stop_token stop);

    // The next slice, in the order of the files; empty at the end, or once a stop is requested. While it waits, calls
    // `onWait` a few times a second with the number of the slice's files that have been read.
    std::vector<ReadFile> next(const std::function<void(size_t)>& onWait);

private:
    struct Slice;
    void readAhead();

    std::vector<FoundFile> files_;
    const size_t filesASlice_;
    const std::stop_token stop_;
    size_t begun_ = 0;  // files already handed to the readers
    std::deque<std::shared_ptr<Slice>> ahead_;
};

}  // namespace brindlehum
