// Reads through libsndfile: interleaved floats, or the samples of a plain WAV file as they stand there, split into
// planes through a fixed buffer.
#include "decode/sndfile_file.h"

#include <sndfile.h>

#include <algorithm>
#include <vector>

#include "base/error.h"
#include "decode/deinterleave.h"
#include "decode/pcm_planes.h"
#include "decode/plausible.h"

namespace brindlehum {

namespace {

struct Coding {
    uint32_t formatID = 0;
    int bitDepth = 0;
    bool isFloat = false;
};

Coding codingOf(int format) {
    const uint32_t linear = fourCC("lpcm");
    if ((format & SF_FORMAT_TYPEMASK) == SF_FORMAT_FLAC) { return {fourCC("flac")}; }
    switch (format & SF_FORMAT_SUBMASK) {
        case SF_FORMAT_PCM_S8:
        case SF_FORMAT_PCM_U8:
            return {linear, 8};
        case SF_FORMAT_PCM_16:
            return {linear, 16};
        case SF_FORMAT_PCM_24:
            return {linear, 24};
        case SF_FORMAT_PCM_32:
            return {linear, 32};
        case SF_FORMAT_FLOAT:
            return {linear, 32, true};
        case SF_FORMAT_DOUBLE:
            return {linear, 64, true};
        case SF_FORMAT_ULAW:
            return {fourCC("ulaw")};
        case SF_FORMAT_ALAW:
            return {fourCC("alaw")};
        case SF_FORMAT_IMA_ADPCM:
            return {fourCC("ima4")};
        case SF_FORMAT_VORBIS:
            return {fourCC("vorb")};
        case SF_FORMAT_OPUS:
            return {fourCC("opus")};
        default:
            return {fourCC("????")};
    }
}

// FFmpeg reads these with exact length and position; libsndfile doesn't, or not in every file.
bool leaveToFFmpeg(const SF_INFO& info) {
    const int subtype = info.format & SF_FORMAT_SUBMASK;
    return (info.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_MPEG ||
           (subtype >= SF_FORMAT_MPEG_LAYER_I && subtype <= SF_FORMAT_MPEG_LAYER_III) ||
           (subtype >= SF_FORMAT_ALAC_16 && subtype <= SF_FORMAT_ALAC_32);
}

// Bytes of a sample that splitPcm can take as it stands in the file; else 0. Faster by half than libsndfile's floats.
int plainBytes(SNDFILE* file, int format) {
    const int type = format & SF_FORMAT_TYPEMASK;
    const bool isWav = type == SF_FORMAT_WAV || type == SF_FORMAT_WAVEX || type == SF_FORMAT_RF64;
    if (!isWav || sf_command(file, SFC_RAW_DATA_NEEDS_ENDSWAP, nullptr, 0) != SF_FALSE) { return 0; }
    const int subtype = format & SF_FORMAT_SUBMASK;
    return subtype == SF_FORMAT_PCM_16 ? 2 : subtype == SF_FORMAT_PCM_24 ? 3 : 0;
}

struct Closer {
    void operator()(SNDFILE* file) const { sf_close(file); }
};
using SndfilePtr = std::unique_ptr<SNDFILE, Closer>;

// Callbacks on a FileCursor, because libsndfile would close our descriptor when it refuses the file.
SF_VIRTUAL_IO cursorIO() {
    SF_VIRTUAL_IO io{};
    io.get_filelen = [](void* user) -> sf_count_t { return static_cast<FileCursor*>(user)->handle->size(); };
    io.seek = [](sf_count_t offset, int whence, void* user) -> sf_count_t {
        return static_cast<FileCursor*>(user)->seek(offset, whence);
    };
    io.read = [](void* out, sf_count_t bytes, void* user) -> sf_count_t {
        return std::max<int64_t>(0, static_cast<FileCursor*>(user)->read(out, bytes));
    };
    io.write = [](const void*, sf_count_t, void*) -> sf_count_t { return 0; };
    io.tell = [](void* user) -> sf_count_t { return static_cast<FileCursor*>(user)->position; };
    return io;
}

class SndfileFile : public AudioFile {
public:
    SndfileFile(std::unique_ptr<FileCursor> cursor, SndfilePtr file, AudioFileFacts facts, int plainBytes)
        : cursor_(std::move(cursor)), file_(std::move(file)), plainBytes_(plainBytes) {
        facts_ = std::move(facts);
        blockFrames_ = std::max(1, bufferFloats / facts_.channels);
    }

    int read(float* const* planes, int64_t position, int frames) override {
        if (position < 0 || position >= facts_.frames || frames <= 0) { return 0; }
        if (position != next_ && sf_seek(file_.get(), position, SEEK_SET) != position) {
            next_ = -1;
            return 0;
        }
        next_ = position;
        const int wanted = int(std::min<int64_t>(frames, facts_.frames - position));
        if (facts_.channels == 1 && plainBytes_ == 0) { return advance(planes[0], wanted); }
        buffer_.resize(size_t(blockFrames_) * size_t(facts_.channels));
        int done = 0;
        while (done < wanted) {
            const int ask = std::min(wanted - done, blockFrames_);
            const int got = plainBytes_ > 0 ? advancePlain(ask, planes, done) : advance(buffer_.data(), ask);
            if (plainBytes_ == 0) { deinterleave(buffer_.data(), facts_.channels, got, planes, done); }
            done += got;
            if (got < ask) { break; }
        }
        return done;
    }

private:
    // 64 kB, which stay in the nearest caches while they are split into planes.
    static constexpr int bufferFloats = 16384;

    int advance(float* out, int frames) { return advanced(int(sf_readf_float(file_.get(), out, frames)), frames); }

    // Behind the first float, since splitPcm reads a little before its input.
    int advancePlain(int frames, float* const* planes, int at) {
        const int frameBytes = facts_.channels * plainBytes_;
        auto* const bytes = reinterpret_cast<uint8_t*>(buffer_.data() + 1);
        const auto read = sf_read_raw(file_.get(), bytes, sf_count_t(frames) * frameBytes);
        const int got = advanced(int(read / frameBytes), frames);
        splitPcm(bytes, plainBytes_, facts_.channels, got, planes, at);
        return got;
    }

    int advanced(int got, int frames) {
        // Damaged data ends the file at the damage; only a read refused by the system is an error.
        if (got < frames && cursor_->failed) { throw Error("the file can't be read any further"); }
        next_ = got < frames ? -1 : next_ + got;
        return std::max(got, 0);
    }

    std::unique_ptr<FileCursor> cursor_;  // outlives file_, which reads through this
    SndfilePtr file_;
    int64_t next_ = 0;  // libsndfile's current frame; -1 after a failure
    int plainBytes_;
    int blockFrames_;
    std::vector<float> buffer_;
};

}  // namespace

std::unique_ptr<AudioFile> openWithSndfile(const std::shared_ptr<FileHandle>& handle, Container container,
                                           const std::function<bool()>& stop) {
    SF_INFO info{};
    SF_VIRTUAL_IO io = cursorIO();
    auto cursor = std::make_unique<FileCursor>();
    cursor->handle = handle;
    cursor->stop = stop;
    SndfilePtr file(sf_open_virtual(&io, SFM_READ, &info, cursor.get()));
    if (!file || info.channels < 1 || info.samplerate < 1 || leaveToFFmpeg(info)) { return nullptr; }
    if (info.frames < 0 || !isPlausibleLength(info.frames, handle->size())) { return nullptr; }
    const Coding coding = codingOf(info.format);
    AudioFileFacts facts{coding.formatID,
                         double(info.samplerate),
                         info.channels,
                         info.frames,
                         coding.bitDepth,
                         coding.isFloat,
                         containerLayout(*handle, container, info.channels)};
    const int plain = plainBytes(file.get(), info.format);
    return std::make_unique<SndfileFile>(std::move(cursor), std::move(file), std::move(facts), plain);
}

}  // namespace brindlehum
