// Audio files for tests: writing by libsndfile and by hand.
#include "support/audio_files.h"

#include <sndfile.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

#include "support/signals.h"

namespace brindlehum::test {

namespace {

int sndfileFormat(const FileShape& shape) {
    // The container of each kind, and its usual samples.
    static constexpr std::pair<int, int> kinds[] = {
        {SF_FORMAT_WAV, SF_FORMAT_PCM_24}, {SF_FORMAT_WAV, SF_FORMAT_FLOAT},  {SF_FORMAT_WAVEX, SF_FORMAT_FLOAT},
        {SF_FORMAT_RF64, SF_FORMAT_FLOAT}, {SF_FORMAT_W64, SF_FORMAT_FLOAT},  {SF_FORMAT_AIFF, SF_FORMAT_PCM_24},
        {SF_FORMAT_CAF, SF_FORMAT_FLOAT},  {SF_FORMAT_FLAC, SF_FORMAT_PCM_24}};
    static constexpr int bits[] = {SF_FORMAT_PCM_U8, SF_FORMAT_PCM_16, SF_FORMAT_PCM_24, SF_FORMAT_PCM_32};
    const auto& [container, usual] = kinds[size_t(shape.kind)];
    return container | (shape.bits == 0 ? usual : shape.bits == 64 ? SF_FORMAT_DOUBLE : bits[shape.bits / 8 - 1]);
}

// SF_CHANNEL_MAP_* in the order of the mask's bits.
std::vector<int> channelMap(uint32_t mask) {
    // clang-format off
    static constexpr int byBit[] = {
        SF_CHANNEL_MAP_LEFT, SF_CHANNEL_MAP_RIGHT, SF_CHANNEL_MAP_CENTER, SF_CHANNEL_MAP_LFE,
        SF_CHANNEL_MAP_REAR_LEFT, SF_CHANNEL_MAP_REAR_RIGHT, SF_CHANNEL_MAP_FRONT_LEFT_OF_CENTER,
        SF_CHANNEL_MAP_FRONT_RIGHT_OF_CENTER, SF_CHANNEL_MAP_REAR_CENTER, SF_CHANNEL_MAP_SIDE_LEFT,
        SF_CHANNEL_MAP_SIDE_RIGHT, SF_CHANNEL_MAP_TOP_CENTER, SF_CHANNEL_MAP_TOP_FRONT_LEFT,
        SF_CHANNEL_MAP_TOP_FRONT_CENTER, SF_CHANNEL_MAP_TOP_FRONT_RIGHT, SF_CHANNEL_MAP_TOP_REAR_LEFT,
        SF_CHANNEL_MAP_TOP_REAR_CENTER, SF_CHANNEL_MAP_TOP_REAR_RIGHT};
    // clang-format on
    std::vector<int> out;
    for (size_t bit = 0; bit < std::size(byBit); ++bit) {
        if (mask >> bit & 1) { out.push_back(byBit[bit]); }
    }
    return out;
}

}  // namespace

TempFolder::TempFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "brindlehum-test-XXXXXX").string();
    if (!mkdtemp(name.data())) { throw std::runtime_error("no temporary folder"); }
    path_ = name;
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

void writeAudio(const std::filesystem::path& path, const Planes& planes, const FileShape& shape) {
    const int channels = int(planes.size());
    SF_INFO info{};
    info.samplerate = shape.rate;
    info.channels = channels;
    info.format = sndfileFormat(shape);
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    if (!file) { throw std::runtime_error("can't write " + path.string() + ": " + sf_strerror(nullptr)); }
    std::vector<int> map = channelMap(shape.mask);
    if (!map.empty()) { sf_command(file, SFC_SET_CHANNEL_MAP_INFO, map.data(), int(map.size() * sizeof(int))); }
    const sf_count_t frames = planes.empty() ? 0 : sf_count_t(planes[0].size());
    std::vector<float> interleaved(size_t(frames) * size_t(channels));
    for (size_t c = 0; c < planes.size(); ++c) {
        for (size_t i = 0; i < planes[c].size(); ++i) { interleaved[i * planes.size() + c] = planes[c][i]; }
    }
    const sf_count_t written = sf_writef_float(file, interleaved.data(), frames);
    sf_close(file);
    if (written != frames) { throw std::runtime_error("short write to " + path.string()); }
}

ReadAudio readAudio(const std::filesystem::path& path) {
    SF_INFO info{};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    if (!file) { throw std::runtime_error("can't read " + path.string() + ": " + sf_strerror(nullptr)); }
    std::vector<float> interleaved(size_t(info.frames) * size_t(info.channels));
    const sf_count_t got = sf_readf_float(file, interleaved.data(), info.frames);
    sf_close(file);
    if (got != info.frames) { throw std::runtime_error("short read of " + path.string()); }
    ReadAudio out{Planes(size_t(info.channels), std::vector<float>(size_t(info.frames))), info.samplerate, info.format};
    for (size_t i = 0; i < interleaved.size(); ++i) {
        out.planes[i % out.planes.size()][i / out.planes.size()] = interleaved[i];
    }
    return out;
}

Planes noisePlanes(int channels, size_t frames, uint32_t seed) {
    Planes out;
    for (int c = 0; c < channels; ++c) {
        out.push_back(noise(frames, seed + uint32_t(c)));
        for (float& x : out.back()) { x *= 0.5F; }
    }
    return out;
}

std::string le16(uint32_t value) {
    return {char(value & 0xFF), char(value >> 8 & 0xFF)};
}

std::string le32(uint32_t value) {
    return le16(value & 0xFFFF) + le16(value >> 16);
}

std::string riffChunk(const std::string& id, const std::string& body) {
    return id + le32(uint32_t(body.size())) + body + (body.size() % 2 ? std::string(1, '\0') : "");
}

void writeBytes(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary);
    out.write(bytes.data(), std::streamsize(bytes.size()));
    if (!out.flush()) { throw std::runtime_error("can't write " + path.string()); }
}

std::string readBytes(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

void run(const std::string& command) {
    const int status = std::system(("{ " + command + "; } >/dev/null 2>&1 </dev/null").c_str());
    if (status != 0) { throw std::runtime_error("failed: " + command); }
}

}  // namespace brindlehum::test
