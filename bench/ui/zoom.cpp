// An hour of 16 channels at 48 kHz in the waveform: the first picture, the detail of each zoom, and the repaint.
#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QImage>
#include <optional>
#include <random>

#include "audio/bench_files.h"
#include "audio/stream/file_source.h"
#include "mix/player/wave_detail.h"
#include "ui/picture/waveform_picture.h"

namespace brindlehum {
namespace {

constexpr int channels = 16;
constexpr int64_t hour = int64_t(3600) * 48000;
constexpr int columns = 1400;  // device pixels
constexpr int64_t overviewBucket = hour / 6000;

// 24-bit samples in an RF64 file, which the file system keeps as a hole: reads cost the decoding, not the disk.
std::filesystem::path hourFile(const bench::TempFolder& folder) {
    constexpr uint64_t bytes = uint64_t(hour) * channels * 3;
    const auto wide = [](uint64_t value) { return bench::little(uint32_t(value), 4) + bench::little(value >> 32, 4); };
    std::string head = "RF64" + bench::little(UINT32_MAX, 4) + "WAVEds64" + bench::little(28, 4);
    head += wide(4 + 36 + 24 + 8 + bytes) + wide(bytes) + wide(uint64_t(hour)) + bench::little(0, 4);
    head += "fmt " + bench::little(16, 4) + bench::little(1, 2) + bench::little(channels, 2);
    head += bench::little(48000, 4) + bench::little(48000 * channels * 3, 4) + bench::little(channels * 3, 2);
    head += bench::little(24, 2) + "data" + bench::little(UINT32_MAX, 4);
    const auto path = folder.path / "hour.wav";
    std::ofstream(path, std::ios::binary).write(head.data(), std::streamsize(head.size()));
    std::filesystem::resize_file(path, head.size() + bytes);
    return path;
}

double heldBytes(const WaveformData& data) {
    return 2.0 * double(data.channels) * double(data.bucketCount) * sizeof(float);
}

void overviewOfAnHour(benchmark::State& state) {
    const bench::TempFolder folder;
    const auto file = hourFile(folder);
    double first = 0;
    WaveformPtr whole;
    for (auto _ : state) {
        const double start = steadySeconds();
        first = 0;
        const auto now = [](auto job) { job(); };
        WaveformLoader::load(
            file,
            [&](WaveformPtr data) {
                if (first == 0) { first = steadySeconds() - start; }
                whole = std::move(data);
            },
            now, now);
    }
    state.counters["first_ms"] = first * 1e3;
    state.counters["held_KiB"] = heldBytes(*whole) / 1024;
}
BENCHMARK(overviewOfAnHour)->Iterations(1)->Unit(benchmark::kMillisecond);

void detailOfAnHour(benchmark::State& state) {
    const bench::TempFolder folder;
    const auto file = hourFile(folder);
    const VisibleRange visible{hour, 1e8, double(state.range(0)) * 48, true};
    const auto span = detailSpan(visible, columns, overviewBucket);
    WaveformPtr data;
    for (auto _ : state) {
        FileSource source(file);
        data = waveformDetail(
            source, *span, [](const WaveformPtr&) {}, [] { return false; }, steadySeconds);
    }
    state.counters["held_KiB"] = heldBytes(*data) / 1024;
}
// Milliseconds in view: ten minutes to ten milliseconds.
BENCHMARK(detailOfAnHour)->Arg(600000)->Arg(60000)->Arg(6000)->Arg(600)->Arg(10)->Unit(benchmark::kMillisecond);

WaveformData noise(const WaveformSpan& span) {
    WaveformData data;
    data.channels = channels;
    data.firstFrame = span.first;
    data.bucketFrames = span.bucketFrames;
    data.bucketCount = data.loadedBuckets = int((span.frames + span.bucketFrames - 1) / span.bucketFrames);
    std::minstd_rand engine(1);
    std::uniform_real_distribution<float> level(0, 1);
    for (int lane = 0; lane < channels; ++lane) {
        auto& high = data.maxs.emplace_back(size_t(data.bucketCount));
        for (float& x : high) { x = level(engine); }
        auto& low = data.mins.emplace_back(high);
        for (float& x : low) { x = span.bucketFrames == 1 ? x : -x; }
    }
    return data;
}

// A repaint at a zoom, all lanes, 1400 x 330 pixels.
void repaint(benchmark::State& state) {
    const WaveformData overview = noise({0, hour, overviewBucket});
    const VisibleRange visible =
        state.range(0) == 0 ? VisibleRange::all(hour) : VisibleRange{hour, 1e8, double(state.range(0)) * 48, true};
    const auto span = detailSpan(visible, columns, overviewBucket);
    const auto detail = span ? std::optional(noise(*span)) : std::nullopt;
    const std::vector<std::string> labels(channels, "Ltf");
    QImage image(columns, 330, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        image.fill(Qt::transparent);
        QPainter painter(&image);
        WaveformPicture::paintLanes(painter, image.size(), 1, {&overview, detail ? &*detail : nullptr, visible, labels},
                                    Theme::darkTheme().waveform);
    }
}
BENCHMARK(repaint)->Arg(0)->Arg(600000)->Arg(6000)->Arg(10)->Arg(2)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace brindlehum

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
