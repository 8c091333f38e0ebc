// The whole overview of a 10-minute stereo file, beside ffmpeg drawing its picture of the same file.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <limits>

#include "audio/wave/waveform.h"
#include "bench_files.h"

namespace brindlehum {
namespace {

// `ffmpeg_over_us`: ffmpeg's time over ours, its start and its small PNG included. The best of the rounds of each, all
// in one run, the file in the page cache.
void overviewOfTenMinutes(benchmark::State& state) {
    constexpr uint32_t rate = 48000;
    const bench::TempFolder folder;
    const std::filesystem::path file = folder.path / "ten minutes.wav";
    bench::writeWav(file, 2, rate, 600 * rate);
    const std::string draw = "ffmpeg -nostdin -y -i '" + file.string() +
                             "' -filter_complex showwavespic=s=1200x240 -frames:v 1 '" + folder.path.string() +
                             "/picture.png'";
    double ours = std::numeric_limits<double>::max();
    double ffmpeg = ours;
    for (auto _ : state) {
        const double now = bench::seconds([&] { benchmark::DoNotOptimize(WaveformLoader::overview(file)); });
        state.SetIterationTime(now);
        ours = std::min(ours, now);
        ffmpeg = std::min(ffmpeg, bench::commandSeconds(draw));
    }
    state.counters["ours_ms"] = ours * 1e3;
    state.counters["ffmpeg_ms"] = ffmpeg * 1e3;
    state.counters["ffmpeg_over_us"] = ffmpeg / ours;
}
BENCHMARK(overviewOfTenMinutes)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace brindlehum
