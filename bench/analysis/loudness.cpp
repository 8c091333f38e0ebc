// Loudness with true peak on ten minutes of stereo: against libebur128 and FFmpeg's ebur128 filter.
#include "analysis/loudness/loudness.h"

#include <benchmark/benchmark.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>

#include "analysis/others.h"
#include "support/cpu_meter.h"

namespace {

using namespace brindlehum;
using namespace brindlehum::bench;

double childSeconds() {
    rusage usage{};
    getrusage(RUSAGE_CHILDREN, &usage);
    return double(usage.ru_utime.tv_sec) + 1e-6 * double(usage.ru_utime.tv_usec);
}

// User time of FFmpeg's filter on raw floats, less that of passing them through, so that its start and its reading
// don't count.
double ffmpegSeconds(const std::vector<float>& interleaved) {
    const auto file =
        std::filesystem::temp_directory_path() / ("brindlehum-bench-" + std::to_string(getpid()) + ".f32");
    std::ofstream(file, std::ios::binary)
        .write(reinterpret_cast<const char*>(interleaved.data()), std::streamsize(interleaved.size() * sizeof(float)));
    const auto run = [&](const std::string& filter) {
        const double before = childSeconds();
        const std::string command =
            "ffmpeg -v error -nostdin -threads 1 -filter_threads 1 -f f32le -ar 48000 -ac 2 -i '" + file.string() +
            "' -af " + filter + " -f null - > /dev/null 2>&1";
        return std::system(command.c_str()) == 0 ? childSeconds() - before : 0;
    };
    const double seconds = run("ebur128=peak=true") - run("anull");
    std::filesystem::remove(file);
    return seconds;
}

void loudness(benchmark::State& state) {
    const Planes piece = makePiece(600, 48000, 2);
    double ours = std::numeric_limits<double>::infinity();
    for (auto _ : state) {
        const double seconds = bestCpuSeconds(
            1, [&] { benchmark::DoNotOptimize(Loudness::measure(piece, 48000, SourceFormat::stereo()).integrated); });
        ours = std::min(ours, seconds);
        state.SetIterationTime(seconds);
    }
    const std::vector<float> interleaved = interleave(piece);
    const double theirs = bestCpuSeconds(3, [&] { benchmark::DoNotOptimize(runEbur128(interleaved, 2, 48000)); });
    state.counters["x_real_time"] = 600 / ours;
    state.counters["x_libebur128"] = theirs / ours;
    state.counters["x_ffmpeg"] = ffmpegSeconds(interleaved) / ours;
}
BENCHMARK(loudness)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

}  // namespace
