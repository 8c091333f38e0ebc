// A WAV file of 32-bit floats in the temporary folder, written byte by byte and gone with the object.
#pragma once

#include <unistd.h>
#include <atomic>
#include <bit>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace brindlehum::test {

class FloatWav {
public:
    FloatWav(const std::vector<std::vector<float>>& channels, uint32_t rate) {
        static_assert(std::endian::native == std::endian::little);
        static std::atomic<int> count = 0;
        path_ = std::filesystem::temp_directory_path() /
                ("brindlehum-" + std::to_string(getpid()) + "-" + std::to_string(++count) + ".wav");
        const auto lanes = uint32_t(channels.size());
        const auto bytes = uint32_t(channels[0].size()) * lanes * 4;
        std::ofstream out(path_, std::ios::binary);
        const auto number = [&](auto value) { out.write(reinterpret_cast<const char*>(&value), sizeof value); };
        out << "RIFF";
        number(36 + bytes);
        out << "WAVEfmt ";
        number(uint32_t(16));
        number(uint16_t(3));  // IEEE float
        number(uint16_t(lanes));
        number(rate);
        number(rate * lanes * 4);
        number(uint16_t(lanes * 4));
        number(uint16_t(32));
        out << "data";
        number(bytes);
        for (size_t i = 0; i < channels[0].size(); ++i) {
            for (const auto& channel : channels) number(channel[i]);
        }
    }
    ~FloatWav() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    FloatWav(const FloatWav&) = delete;
    FloatWav& operator=(const FloatWav&) = delete;
    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

}  // namespace brindlehum::test
