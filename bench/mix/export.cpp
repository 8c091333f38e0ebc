// Exports of a minute to a RAM disk, reading, writing and placing the file included, on one core.
#include <benchmark/benchmark.h>

#include <sys/resource.h>

#include "audio/write/wav_file_writer.h"
#include "mix/export/exporter.h"
#include "support/signals.h"

namespace {

using namespace brindlehum;

constexpr int rate = 48000;
const std::filesystem::path ramDisk = "/dev/shm";

struct Case {
    LayoutID source;
    DragExport mode;
    int seconds;
};

void writeNoise(const std::filesystem::path& file, int channels, int seconds) {
    std::vector<std::vector<float>> planes;
    for (int c = 0; c < channels; ++c) {
        planes.push_back(test::noise(size_t(rate), uint32_t(c)));
        for (float& sample : planes.back()) { sample *= 0.1F; }
    }
    WavFileWriter writer(file, rate, channels, 0, "");
    for (int i = 0; i < seconds; ++i) { writer.appendAll(planes); }
    writer.finish();
}

void exports(benchmark::State& state, const Case& what) {
    const std::filesystem::path folder = ramDisk / "brindlehum-bench";
    const auto file = folder / "source.wav";
    std::filesystem::create_directories(folder);
    const SpeakerList& list = speakers(what.source);
    writeNoise(file, int(list.size()), what.seconds);
    Exporter::Request request;
    request.info = AudioFileInfo::load(file);
    request.source = SourceFormat::speakers(list);
    request.mode = what.mode;
    request.folder = folder / "pulls";
    request.upmix = params(UpmixPreset::film);
    request.upmixName = "Film";
    Exporter::make(request);  // loads what is loaded once
    for (auto _ : state) {
        state.PauseTiming();
        std::filesystem::remove_all(request.folder);
        state.ResumeTiming();
        Exporter::make(request);
    }
    state.counters["times_real_time"] =
        benchmark::Counter(double(what.seconds) * double(state.iterations()), benchmark::Counter::kIsRate);
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    state.counters["MB"] = double(usage.ru_maxrss) / 1024;
    std::filesystem::remove_all(folder);
}

using enum LayoutID;
BENCHMARK_CAPTURE(exports, bed16To12, Case{l916, DragExport::bed(l714), 60})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(exports, binaural12, Case{l714, DragExport::binaural(), 60})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(exports, upmix2To12, Case{stereo, DragExport::upmix(l714), 60})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(exports, fiveSecondsUpmixed, Case{stereo, DragExport::upmix(l714), 5})->Unit(benchmark::kMillisecond);

}  // namespace
