// WavFileWriter: WAVE files with a channel mask and a Broadcast Wave description, written in one pass.
//
// The form is RIFF with WAVE_FORMAT_EXTENSIBLE (mmreg.h) and a version 1 `bext` chunk (EBU Tech 3285); 24-bit samples
// without further chunks start at byte 678. There is no 64-bit form: samples beyond RIFF's 4 GB are refused.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "audio/write/wav_form.h"
#include "base/byte_sink.h"

namespace brindlehum {

class WavEncoder;

// One thread at a time. All calls do blocking I/O and throw Error: wavSizeLimit at the 4 GB limit, other with the
// system's reason for anything else. After an Error from `append` the earlier blocks stay, and `finish` still makes a
// valid file of them. Without `finish` the sizes in the header stay 0.
class WavFileWriter {
public:
    // The most sample bytes: 65,536 less than 32 bits can count, which leaves room for header and padding. A longer
    // header takes its excess away from them.
    static constexpr uint64_t maxDataBytes = 0xFFFEFFFF;
    static constexpr int maxChannels = 21845;
    static constexpr size_t descriptionBytes = 256;
    // Where the file holds the date and the time of its making.
    static constexpr size_t creationOffset = 388;
    static constexpr size_t creationBytes = 18;

    // Creates the file (replacing an existing one) and its parent folders, and writes the header. Stores `sampleRate`
    // in Hz as the nearest integer. `channels` is 1 to maxChannels, and the bytes a second must fit in 32 bits (else
    // Error); `mask` is a dwChannelMask; `description` is cut after 256 bytes of UTF-8. The samples are pcm24.
    WavFileWriter(const std::filesystem::path& path, double sampleRate, int channels, uint32_t mask,
                  std::string_view description);
    // The same, written to any sink.
    WavFileWriter(std::unique_ptr<ByteSink> sink, double sampleRate, int channels, uint32_t mask,
                  std::string_view description);
    WavFileWriter(std::unique_ptr<ByteSink> sink, const WavForm& form);
    ~WavFileWriter();
    WavFileWriter(WavFileWriter&&) noexcept;
    WavFileWriter& operator=(WavFileWriter&&) noexcept;

    // Appends `frames` frames (below 1: nothing) from one pointer per channel. Missing channels are silent; channels
    // beyond the file's are ignored. A sample of 1.0 or above, or not a number, becomes 0x7FFFFF; -1.0 or below becomes
    // -0x7FFFFF. Refuses a whole block that would pass maxDataBytes.
    void append(std::span<const float* const> planes, int64_t frames);

    // Appends whole channels, each cut to the length of the first, in blocks of 65536 frames. Throws
    // std::invalid_argument when a channel is shorter than the first.
    void appendAll(const std::vector<std::vector<float>>& channels);

    // Pads, writes the sizes and closes the file. With `sync` the file is on the disk afterwards, ready to be renamed
    // over another. Call nothing after it.
    void finish(bool sync = false);

    uint64_t dataBytes() const { return dataBytes_; }

private:
    void appendBlock(std::span<const float* const> planes, int64_t frames, const char* refusal);

    int channels_;
    WavSamples samples_;
    std::unique_ptr<ByteSink> handle_;
    std::unique_ptr<WavEncoder> encoder_;
    uint64_t dataStart_ = 0;
    std::optional<uint64_t> frameCountOffset_;
    uint64_t dataBytes_ = 0;
    std::vector<uint8_t> scratch_;  // encoded samples, reused between calls
};

}  // namespace brindlehum
