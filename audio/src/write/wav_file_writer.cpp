// WavFileWriter: checks limits, writes blocks and fills in the two sizes.
#include "audio/write/wav_file_writer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>
#include <limits>
#include <stdexcept>

#include "base/error.h"
#include "write/pcm24.h"
#include "write/wav_header.h"

namespace brindlehum {
namespace {

constexpr int64_t blockFrames = 65536;
// Encoded bytes per write: few enough that they stay in the second cache until the system has taken them.
constexpr int64_t writeBytes = 192 * 1024;

WavShape shapeOf(double sampleRate, int channels, uint32_t mask) {
    const double rate = std::round(sampleRate);
    const double bytesPerSecond = rate * channels * WavHeader::bytesPerSample;
    const bool fits = channels >= 1 && channels <= WavFileWriter::maxChannels && rate >= 1 &&
                      bytesPerSecond <= double(std::numeric_limits<uint32_t>::max());
    if (!fits) {
        throw Error("A WAV file can't hold " + std::to_string(channels) + " channels at " + std::to_string(sampleRate) +
                    " Hz");
    }
    return {channels, uint32_t(rate), mask};
}

std::array<uint8_t, 4> little32(uint64_t value) {
    return {uint8_t(value), uint8_t(value >> 8), uint8_t(value >> 16), uint8_t(value >> 24)};
}

}  // namespace

WavFileWriter::WavFileWriter(const std::filesystem::path& path, double sampleRate, int channels, uint32_t mask,
                             std::string_view description)
    // Check the shape before anything is created or replaced.
    : WavFileWriter((shapeOf(sampleRate, channels, mask), makeFileSink(path)), sampleRate, channels, mask,
                    description) {}

WavFileWriter::WavFileWriter(std::unique_ptr<ByteSink> sink, double sampleRate, int channels, uint32_t mask,
                             std::string_view description)
    : channels_(channels), handle_(std::move(sink)) {
    const std::time_t now = std::time(nullptr);
    std::tm created{};
    localtime_r(&now, &created);
    handle_->writeAt(0, WavHeader::make(shapeOf(sampleRate, channels, mask), description, created));
    encoder_ = std::make_unique<Pcm24Encoder>(channels);
}

WavFileWriter::~WavFileWriter() = default;
WavFileWriter::WavFileWriter(WavFileWriter&&) noexcept = default;
WavFileWriter& WavFileWriter::operator=(WavFileWriter&&) noexcept = default;

void WavFileWriter::append(std::span<const float* const> planes, int64_t frames) {
    appendBlock(planes, frames, "Selection too long for a WAV file (4 GB limit)");
}

void WavFileWriter::appendAll(const std::vector<std::vector<float>>& channels) {
    const size_t frames = channels.empty() ? 0 : channels[0].size();
    if (std::ranges::any_of(channels, [&](const auto& c) { return c.size() < frames; })) {
        throw std::invalid_argument("channels of unequal length");
    }
    std::vector<const float*> planes(channels.size());
    for (int64_t at = 0; at < int64_t(frames); at += blockFrames) {
        std::ranges::transform(channels, planes.begin(), [&](const auto& c) { return c.data() + at; });
        appendBlock(planes, std::min(blockFrames, int64_t(frames) - at), "Too long for a WAV file (4 GB limit)");
    }
}

void WavFileWriter::appendBlock(std::span<const float* const> planes, int64_t frames, const char* refusal) {
    if (frames < 1) { return; }
    const int64_t frameBytes = int64_t(channels_) * WavHeader::bytesPerSample;
    if (uint64_t(frames) > (maxDataBytes - dataBytes_) / uint64_t(frameBytes)) {
        throw Error(ErrorKind::wavSizeLimit, refusal);
    }

    const int64_t most = std::max<int64_t>(writeBytes / frameBytes, 1);
    const auto room = size_t(std::min(most, frames) * frameBytes) + 1;
    if (scratch_.size() < room) { scratch_.resize(room); }
    uint64_t end = WavHeader::size + dataBytes_;
    for (int64_t done = 0; done < frames; done += most) {
        const int64_t count = std::min(most, frames - done);
        encoder_->encode(planes, done, count, scratch_.data());
        handle_->writeAt(end, {scratch_.data(), size_t(count * frameBytes)});
        end += uint64_t(count * frameBytes);
    }
    // Count the block only now, so that a block that broke off isn't part of the file.
    dataBytes_ = end - WavHeader::size;
}

void WavFileWriter::finish(bool sync) {
    uint64_t end = WavHeader::size + dataBytes_;
    if (dataBytes_ % 2 != 0) {
        handle_->writeAt(end, std::array<uint8_t, 1>{});
        ++end;
    }
    handle_->writeAt(WavHeader::riffSizeOffset, little32(end - 8));
    handle_->writeAt(WavHeader::dataSizeOffset, little32(dataBytes_));
    handle_->finish(end, sync);
    handle_.reset();
}

}  // namespace brindlehum
