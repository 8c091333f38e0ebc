// Probing 1,000 WAV files in one process, beside one soxi and one exiftool over the same files.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <limits>

#include "audio/probe/audio_file_info.h"
#include "bench_files.h"

namespace brindlehum {
namespace {

constexpr int fileCount = 1000;

// `of_soxi`: our time over soxi's. `exiftool_over_us`: exiftool's time over ours. The best of the rounds of each, all
// in one run; the children's own start is part of their time.
void probeWavFiles(benchmark::State& state) {
    const bench::TempFolder folder;
    std::vector<std::filesystem::path> paths;
    for (int i = 0; i < fileCount; ++i) {
        paths.push_back(folder.path / ("take " + std::to_string(i) + ".wav"));
        bench::writeWav(paths.back(), 2, 48000, 4800);
    }
    const std::string all = "cd '" + folder.path.string() + "' && ";
    double ours = std::numeric_limits<double>::max();
    double soxi = ours;
    double exiftool = ours;
    for (auto _ : state) {
        const double now = bench::seconds([&] {
            for (const auto& path : paths) { benchmark::DoNotOptimize(AudioFileInfo::load(path)); }
        });
        state.SetIterationTime(now);
        ours = std::min(ours, now);
        soxi = std::min(soxi, bench::commandSeconds(all + "soxi *.wav"));
        exiftool = std::min(exiftool, bench::commandSeconds(all + "exiftool ."));
    }
    state.counters["us_per_file"] = ours / fileCount * 1e6;
    state.counters["of_soxi"] = ours / soxi;
    state.counters["exiftool_over_us"] = exiftool / ours;
}
BENCHMARK(probeWavFiles)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace brindlehum
