// WavFileWriter: checks limits, writes blocks and fills in the two sizes.
#include "audio/write/wav_file_writer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>
#include <limits>
#include <stdexcept>
#include <string>

#include "base/error.h"
#include "write/wav_encoder.h"
#include "write/wav_header.h"

namespace brindlehum {
namespace {

constexpr int64_t blockFrames = 65536;
// Encoded bytes per write: few enough that they stay in the second cache until the system has taken them.
constexpr int64_t writeBytes = 192 * 1024;

void checkShape(double sampleRate, int channels, WavSamples samples) {
    const double rate = std::round(sampleRate);
    const double bytesPerSecond = rate * channels * bytesOf(samples);
    const bool fits = channels >= 1 && channels <= WavFileWriter::maxChannels && rate >= 1 &&
                      bytesPerSecond <= double(std::numeric_limits<uint32_t>::max());
    if (!fits) {
        throw Error("A WAV file can't hold " + std::to_string(channels) + " channels at " + std::to_string(sampleRate) +
                    " Hz");
    }
}

WavForm formOf(double sampleRate, int channels, uint32_t mask, std::string_view description) {
    return {sampleRate, channels, mask, WavSamples::pcm24, {.description = std::string(description)}};
}

std::span<const uint8_t> bytesIn(const std::string& text) {
    return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

std::array<uint8_t, 4> little32(uint64_t value) {
    return {uint8_t(value), uint8_t(value >> 8), uint8_t(value >> 16), uint8_t(value >> 24)};
}

}  // namespace

WavFileWriter::WavFileWriter(const std::filesystem::path& path, double sampleRate, int channels, uint32_t mask,
                             std::string_view description)
    // Check the shape before anything is created or replaced.
    : WavFileWriter((checkShape(sampleRate, channels, WavSamples::pcm24), makeFileSink(path)), sampleRate, channels,
                    mask, description) {}

WavFileWriter::WavFileWriter(std::unique_ptr<ByteSink> sink, double sampleRate, int channels, uint32_t mask,
                             std::string_view description)
    : WavFileWriter(std::move(sink), formOf(sampleRate, channels, mask, description)) {}

WavFileWriter::WavFileWriter(std::unique_ptr<ByteSink> sink, const WavForm& form)
    : channels_(form.channels), samples_(form.samples), handle_(std::move(sink)) {
    checkShape(form.sampleRate, form.channels, form.samples);
    const std::time_t now = std::time(nullptr);
    std::tm created{};
    localtime_r(&now, &created);
    const WavHeader header(form, created);
    handle_->writeAt(0, bytesIn(header.bytes));
    dataStart_ = header.bytes.size();
    frameCountOffset_ = header.frameCountOffset;
    encoder_ = std::make_unique<WavEncoder>(channels_, samples_);
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
    const int64_t frameBytes = int64_t(channels_) * bytesOf(samples_);
    const uint64_t room = maxDataBytes - std::min(maxDataBytes, dataBytes_ + dataStart_ - WavHeader::usualBytes);
    if (uint64_t(frames) > room / uint64_t(frameBytes)) { throw Error(ErrorKind::wavSizeLimit, refusal); }

    const int64_t most = std::max<int64_t>(writeBytes / frameBytes, 1);
    const auto needed = size_t(std::min(most, frames) * frameBytes) + 1;
    if (scratch_.size() < needed) { scratch_.resize(needed); }
    uint64_t end = dataStart_ + dataBytes_;
    for (int64_t done = 0; done < frames; done += most) {
        const int64_t count = std::min(most, frames - done);
        encoder_->encode(planes, done, count, scratch_.data());
        handle_->writeAt(end, {scratch_.data(), size_t(count * frameBytes)});
        end += uint64_t(count * frameBytes);
    }
    // Count the block only now, so that a block that broke off isn't part of the file.
    dataBytes_ = end - dataStart_;
}

void WavFileWriter::finish(bool sync) {
    uint64_t end = dataStart_ + dataBytes_;
    if (dataBytes_ % 2 != 0) {
        handle_->writeAt(end, std::array<uint8_t, 1>{});
        ++end;
    }
    handle_->writeAt(WavHeader::riffSizeOffset, little32(end - 8));
    handle_->writeAt(dataStart_ - 4, little32(dataBytes_));
    if (frameCountOffset_) {
        handle_->writeAt(*frameCountOffset_, little32(dataBytes_ / uint64_t(channels_ * bytesOf(samples_))));
    }
    handle_->finish(end, sync);
    handle_.reset();
}

}  // namespace brindlehum
