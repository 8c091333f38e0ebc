// Files to export from, and exported files as another library reads them.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "mix/export/exporter.h"
#include "support/audio_files.h"
#include "support/signals.h"

namespace brindlehum::test {

class ExportTest : public testing::Test {
protected:
    static constexpr int rate = 48000;

    Exporter::Request request(const std::filesystem::path& file, DragExport mode = {}) const {
        Exporter::Request made;
        made.info = AudioFileInfo::load(file);
        made.source = made.info.detected;
        made.mode = mode;
        made.folder = folder_ / "Pulls";
        made.upmix = params(UpmixPreset::broadcast);
        made.upmixName = displayName(UpmixPreset::broadcast);
        return made;
    }
    Exporter::Request request(const Planes& planes, DragExport mode = {}, const std::string& name = "rain.wav") {
        writeAudio(folder_ / name, planes);
        return request(folder_ / name, mode);
    }
    // The names in the folder of the day, hidden ones included.
    std::vector<std::string> pulls() const {
        std::vector<std::string> names;
        std::error_code none;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_ / "Pulls", none)) {
            if (!entry.is_directory()) { names.push_back(entry.path().filename().string()); }
        }
        std::ranges::sort(names);
        return names;
    }
    // Samples as libsndfile reads 24 bits, in units of the written full scale.
    static Planes written(const std::filesystem::path& file) {
        Planes planes = readAudio(file).planes;
        for (auto& plane : planes) {
            for (float& sample : plane) { sample = float(double(sample) * 8388608 / 8388607); }
        }
        return planes;
    }
    TempFolder folder_;
};

inline double largestDifference(const std::vector<float>& a, const std::vector<float>& b) {
    double largest = a.size() == b.size() ? 0 : 2;
    for (size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        largest = std::max(largest, std::abs(double(a[i]) - double(b[i])));
    }
    return largest;
}

}  // namespace brindlehum::test
