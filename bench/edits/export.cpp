// Rendering and writing the edits of one piece, and the whole batch of 20 files, to a RAM disk.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <limits>
#include <string>

#include "analysis/piece.h"
#include "audio/write/wav_file_writer.h"
#include "edits/temp_edit_renderer.h"
#include "edits/temp_edits.h"
#include "support/cpu_meter.h"

namespace {

using namespace brindlehum;
namespace fs = std::filesystem;

constexpr double rate = 48000;

class RamFolder {
public:
    RamFolder() { fs::create_directories(path); }
    ~RamFolder() { fs::remove_all(path); }
    const fs::path path = fs::path("/dev/shm") / ("brindlehum-bench-" + std::to_string(getpid()));
};

void writeSource(const fs::path& path, const bench::Planes& planes) {
    WavFileWriter writer(path, rate, int(planes.size()), 3, "");
    writer.appendAll(planes);
    writer.finish();
}

double sum(const std::vector<double>& values) {
    double out = 0;
    for (const double value : values) { out += value; }
    return out;
}

// Five minutes, stereo, all default plans. The goal: 200 times real time.
void renderAndWrite(benchmark::State& state) {
    const RamFolder folder;
    const fs::path source = folder.path / "piece.wav";
    const bench::Planes piece = bench::makePiece(300, rate, 2);
    writeSource(source, piece);
    const auto planned = TempEdits::plan(source);
    const std::vector<std::string> header = {"piece"};
    const TempEditOptions options;
    const Sound sound(piece);
    const fs::path edits = folder.path / "piece Edits";
    TempEditExporter::Result done;
    const auto write = [&] {
        TempEditExporter::write({source, edits, "piece", header, planned.plans, sound, rate, options}, done);
    };
    double best = std::numeric_limits<double>::infinity();
    for (auto _ : state) {
        const double seconds = bench::bestCpuSeconds(1, write);
        best = std::min(best, seconds);
        state.SetIterationTime(seconds);
    }
    const double rendering = bench::bestCpuSeconds(3, [&] {
        for (const auto& plan : planned.plans) {
            benchmark::DoNotOptimize(TempEditRenderer::render(plan, sound, rate, options).data());
        }
    });
    state.counters["files"] = double(done.files.size());
    state.counters["minutes_written"] = sum(done.seconds) / 60;
    state.counters["x_real_time"] = sum(done.seconds) / best;
    state.counters["x_real_time_render_alone"] = sum(done.seconds) / rendering;
}
BENCHMARK(renderAndWrite)->UseManualTime()->Iterations(10)->Unit(benchmark::kMillisecond);

// Twenty files of two minutes, from the file to the sheet, by wall clock. The average number of files at work doesn't
// depend on the machine's other load.
void batch(benchmark::State& state) {
    const RamFolder folder;
    const auto piece = bench::makePiece(120, rate, 2);
    std::vector<TempEdits::Job> jobs;
    for (int i = 0; i < 20; ++i) {
        const fs::path url = folder.path / ("piece " + std::to_string(i) + ".wav");
        writeSource(url, piece);
        jobs.push_back({url, TempEditExporter::editsFolder(url, true, {})});
    }
    using Clock = std::chrono::steady_clock;
    std::vector<Clock::time_point> began(jobs.size());
    Clock::duration atWork{};
    const auto watch = [&](const TempEdits::Step& step) {
        if (step.kind == TempEdits::Step::Kind::started) { began[step.index] = Clock::now(); }
        if (step.kind != TempEdits::Step::Kind::finished) { return; }
        atWork += Clock::now() - began[step.index];
        fs::remove_all(step.job.folder);
    };
    double minutes = 0;
    Clock::duration whole{};
    for (auto _ : state) {
        const auto start = Clock::now();
        const auto outcomes = TempEdits::makeAll(jobs, {}, watch, {}, {.workers = unsigned(state.range(0))});
        whole += Clock::now() - start;
        minutes = 0;
        for (const auto& outcome : outcomes) { minutes += sum(outcome.result.seconds) / 60; }
    }
    state.counters["files_at_work"] = std::chrono::duration<double>(atWork) / std::chrono::duration<double>(whole);
    state.counters["minutes_read"] = 20 * 2;
    state.counters["minutes_written"] = minutes;
}
BENCHMARK(batch)->Arg(1)->Arg(2)->UseRealTime()->MeasureProcessCPUTime()->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
