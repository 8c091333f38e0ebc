// Files and child processes for the benchmarks of the audio folder.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

namespace brindlehum::bench {

// A fresh folder, removed with its content at the end.
class TempFolder {
public:
    TempFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "brindlehum-bench-XXXXXX").string();
        if (!mkdtemp(name.data())) { throw std::runtime_error("no temporary folder"); }
        path = name;
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    std::filesystem::path path;
};

inline std::string little(uint32_t value, int bytes) {
    std::string out;
    for (int i = 0; i < bytes; ++i) { out += char(value >> (8 * i) & 0xFF); }
    return out;
}

// 16-bit noise with a Broadcast Wave description before the samples, as field recorders write it.
inline void writeWav(const std::filesystem::path& path, uint32_t channels, uint32_t rate, uint32_t frames) {
    std::string bext(602, '\0');
    bext.replace(0, 26, "Rain on a tin roof, take 3");
    const uint32_t bytes = frames * channels * 2;
    std::string head = "RIFF" + little(4 + 8 + 602 + 8 + 16 + 8 + bytes, 4) + "WAVE";
    head += "bext" + little(602, 4) + bext;
    head += "fmt " + little(16, 4) + little(1, 2) + little(channels, 2) + little(rate, 4);
    head += little(rate * channels * 2, 4) + little(channels * 2, 2) + little(16, 2);
    head += "data" + little(bytes, 4);
    std::ofstream out(path, std::ios::binary);
    out.write(head.data(), std::streamsize(head.size()));
    std::minstd_rand engine(1);
    std::vector<uint16_t> block(1 << 16);
    for (uint16_t& x : block) { x = uint16_t(engine() >> 8); }
    for (uint64_t left = bytes; left > 0;) {
        const uint64_t part = std::min<uint64_t>(left, block.size() * 2);
        out.write(reinterpret_cast<const char*>(block.data()), std::streamsize(part));
        left -= part;
    }
    if (!out.flush()) { throw std::runtime_error("can't write " + path.string()); }
}

// Seconds that a piece of work takes.
template <typename Work>
double seconds(Work&& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Seconds that a shell command takes, its output dropped. Throws when it fails.
inline double commandSeconds(const std::string& command) {
    return seconds([&] {
        if (std::system((command + " >/dev/null 2>&1").c_str()) != 0) {
            throw std::runtime_error("failed: " + command);
        }
    });
}

}  // namespace brindlehum::bench
