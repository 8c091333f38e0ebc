// Audio files for tests: a temporary folder, multichannel files of any libsndfile format, and child processes.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace brindlehum::test {

// A fresh folder under the system's temporary folder, removed with its content at the end.
class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

using Planes = std::vector<std::vector<float>>;  // one equally long array a channel

enum class FileKind { wav, wavFloat, wavex, rf64, w64, aiff, caf, flac };

struct FileShape {
    FileKind kind = FileKind::wavFloat;
    int rate = 48000;
    int bits = 0;       // 0: 32-bit float where the kind has it, else 24; 8, 16, 24, 32, or 64 for double
    uint32_t mask = 0;  // dwChannelMask, for wavex
};

// Writes `planes` through libsndfile. Throws std::runtime_error when that fails.
void writeAudio(const std::filesystem::path& path, const Planes& planes, const FileShape& shape = {});

// A file as libsndfile reads it.
struct ReadAudio {
    Planes planes;
    int rate = 0;
    int format = 0;  // SF_FORMAT_* of libsndfile
};
// Throws std::runtime_error when libsndfile can't read all of it.
ReadAudio readAudio(const std::filesystem::path& path);

// Seeded noise, another seed a channel, at -6 dBFS peak.
Planes noisePlanes(int channels, size_t frames, uint32_t seed = 1);

// Little-endian RIFF pieces, for files that no library would write.
std::string le16(uint32_t value);
std::string le32(uint32_t value);
std::string riffChunk(const std::string& id, const std::string& body);
void writeBytes(const std::filesystem::path& path, const std::string& bytes);
std::string readBytes(const std::filesystem::path& path);

// Runs a shell command with its output dropped; throws std::runtime_error when it doesn't end with 0.
void run(const std::string& command);

}  // namespace brindlehum::test
