// Writing 24-bit WAV files, beside libsndfile writing the same samples. TMPDIR names the disk that is written to.
#include <benchmark/benchmark.h>
#include <sndfile.h>

#include <algorithm>
#include <limits>

#include "audio/write/wav_file_writer.h"
#include "bench_files.h"
#include "support/cpu_meter.h"

namespace brindlehum {
namespace {

using Planes = std::vector<std::vector<float>>;

void writeBySndfile(const std::filesystem::path& path, const Planes& planes, int rate) {
    SF_INFO info{};
    info.samplerate = rate;
    info.channels = int(planes.size());
    info.format = SF_FORMAT_WAVEX | SF_FORMAT_PCM_24;
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    if (!file) { throw std::runtime_error(sf_strerror(nullptr)); }
    constexpr size_t block = 4096;
    std::vector<float> frames(block * planes.size());
    for (size_t at = 0; at < planes[0].size(); at += block) {
        const size_t count = std::min(block, planes[0].size() - at);
        for (size_t c = 0; c < planes.size(); ++c) {
            for (size_t i = 0; i < count; ++i) { frames[i * planes.size() + c] = planes[c][at + i]; }
        }
        sf_writef_float(file, frames.data(), sf_count_t(count));
    }
    sf_close(file);
}

struct NoSink final : ByteSink {
    void writeAt(uint64_t, std::span<const uint8_t> bytes) override { benchmark::DoNotOptimize(bytes.data()); }
    void finish(uint64_t, bool) override {}
};

void write(WavFileWriter writer, const Planes& planes) {
    writer.appendAll(planes);
    writer.finish();
}

// Argument: channels. One minute at 48 kHz in processor time, the best of all rounds of each: to a file, beside
// libsndfile, and without the system's part (`encoding_x_realtime`).
void writeOneMinute(benchmark::State& state) {
    constexpr int rate = 48000;
    const auto channels = int(state.range(0));
    std::minstd_rand engine(1);
    std::uniform_real_distribution<float> uniform(-1.0F, 1.0F);
    Planes planes(size_t(channels), std::vector<float>(60 * rate));
    for (auto& plane : planes) {
        for (float& x : plane) { x = uniform(engine); }
    }
    const bench::TempFolder folder;
    double ours = std::numeric_limits<double>::max();
    double encoding = ours;
    double sndfile = ours;
    for (auto _ : state) {
        const double now = bench::bestCpuSeconds(
            1, [&] { write(WavFileWriter(folder.path / "ours.wav", rate, channels, 0, "A take"), planes); });
        state.SetIterationTime(now);
        ours = std::min(ours, now);
        encoding = std::min(encoding, bench::bestCpuSeconds(1, [&] {
                                write(WavFileWriter(std::make_unique<NoSink>(), rate, channels, 0, "A take"), planes);
                            }));
        sndfile = std::min(sndfile,
                           bench::bestCpuSeconds(1, [&] { writeBySndfile(folder.path / "other.wav", planes, rate); }));
    }
    state.counters["x_realtime"] = 60 / ours;
    state.counters["encoding_x_realtime"] = 60 / encoding;
    state.counters["sndfile_over_us"] = sndfile / ours;
}
BENCHMARK(writeOneMinute)->Arg(1)->Arg(2)->Arg(12)->UseManualTime()->Iterations(7)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace brindlehum
