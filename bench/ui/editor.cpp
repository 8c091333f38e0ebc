// The editor's window: until a cut, a paste and an undo of half an hour of stereo are drawn, and a frame of 16 lanes.
// Run it with QT_SCALE_FACTOR=2 for the figures of a dense screen.
#include <benchmark/benchmark.h>

#include <QApplication>

#include "audio/bench_files.h"
#include "audio/wave/waveform.h"
#include "base/error.h"
#include "editor/document/clipboard.h"
#include "editor/model/editor_model.h"
#include "platform/headless_audio.h"
#include "platform/headless_session.h"
#include "platform/qt_main_loop.h"
#include "ui/editor/editor_actions.h"
#include "ui/editor/editor_wave_view.h"
#include "ui/editor/editor_window.h"
#include "ui/look/theme_controller.h"

namespace brindlehum {
namespace {

constexpr int64_t halfHour = int64_t(1799) * 48000;  // frames

// A window of 1600 x 1000 logical pixels on a document of half an hour.
struct Bench {
    bench::TempFolder folder;
    QtMainLoop loop;
    HeadlessAudioSystem audio;
    MemoryDefaults defaults;
    SettingsStore settings{defaults};
    PlaybackEngine engine{audio, loop, [](double) -> std::shared_ptr<BinauralStage> { throw Error("none"); }};
    EditorModel model{engine, settings, loop, folder.path / "state", std::make_shared<SerialQueue>("edits")};
    HeadlessSession session;
    EditorWindow window{model, settings, session.fileManager()};
    DocumentModel& document = model.document();

    // Half an hour of one file, or of a shorter one pasted behind itself, which shares its samples but not its pieces.
    Bench(uint32_t channels, int64_t frames) {
        EditorClipboard::clear();
        const auto file = folder.path / "noise.wav";
        bench::writeWav(file, channels, 48000, uint32_t(frames));
        window.resize(1600, 1000);
        window.show();
        document.open(file);
        while (!document.doc()) { drawn(); }
        if (frames < halfHour) {
            document.setSelection(FrameRange{0, frames});
            document.copy();
            document.setSelection({});
            while (document.total() < halfHour) {
                document.setCursor(document.total());
                document.paste();
                document.setSelection({});
            }
        }
        document.setView(VisibleRange::all(document.total()));
        document.finish(60);
        drawn();
    }
    ~Bench() { document.close(); }
    static void drawn() { QCoreApplication::processEvents(); }
};

Bench& stereo() {
    static Bench made(2, halfHour);
    return made;
}

Bench& bed() {
    static Bench made(16, int64_t(20) * 48000);
    return made;
}

// `edit` is timed until it is drawn, `before` and `after` aren't.
template <class Before, class Edit, class After>
void untilDrawn(benchmark::State& state, Bench& on, Before before, Edit edit, After after) {
    double longest = 0;
    for (auto _ : state) {
        state.PauseTiming();
        before();
        Bench::drawn();
        state.ResumeTiming();
        const double start = steadySeconds();
        edit();
        Bench::drawn();
        longest = std::max(longest, steadySeconds() - start);
        state.PauseTiming();
        after();
        on.document.finish(60);
        Bench::drawn();
        state.ResumeTiming();
    }
    state.counters["longest_ms"] = longest * 1e3;
}

void cutOfHalfAnHour(benchmark::State& state) {
    DocumentModel& document = stereo().document;
    untilDrawn(
        state, stereo(),
        [&] {
            document.setSelection(FrameRange{halfHour / 3, halfHour / 3 + 4'800'007});
        },
        [&] { document.cut(); }, [&] { document.undo(); });
}
BENCHMARK(cutOfHalfAnHour)->Iterations(20)->Unit(benchmark::kMillisecond);

void pasteIntoHalfAnHour(benchmark::State& state) {
    DocumentModel& document = stereo().document;
    untilDrawn(
        state, stereo(), [&] { document.setSelection({}), document.setCursor(halfHour / 4 + 77); },
        [&] { document.paste(); }, [&] { document.undo(); });
}
BENCHMARK(pasteIntoHalfAnHour)->Iterations(20)->Unit(benchmark::kMillisecond);

void undoInHalfAnHour(benchmark::State& state) {
    DocumentModel& document = stereo().document;
    untilDrawn(
        state, stereo(),
        [&] {
            document.setSelection(FrameRange{halfHour / 3, halfHour / 3 + 4'800'007});
            document.remove();
        },
        [&] { document.undo(); }, [] {});
}
BENCHMARK(undoInHalfAnHour)->Iterations(20)->Unit(benchmark::kMillisecond);

void previewOfAnEffect(benchmark::State& state) {
    DocumentModel& document = stereo().document;
    document.setSelection({});
    for (auto _ : state) {
        document.preview("reverse", [](const Sound&) {});
        Bench::drawn();
    }
}
BENCHMARK(previewOfAnEffect)->Iterations(5)->Unit(benchmark::kMillisecond);

// Milliseconds in view; 0 for all.
VisibleRange shown(const DocumentModel& document, int64_t milliseconds) {
    if (milliseconds == 0) { return VisibleRange::all(document.total()); }
    return {document.total(), double(document.total()) / 3, double(milliseconds) * 48, false};
}

void zoomOfSixteenLanes(benchmark::State& state) {
    DocumentModel& document = bed().document;
    const VisibleRange view = shown(document, state.range(0));
    double sign = 1;
    for (auto _ : state) {
        VisibleRange next = view;
        next.length *= 1 - 0.01 * (sign = 1 - sign);
        document.setView(next);
        Bench::drawn();
    }
}
BENCHMARK(zoomOfSixteenLanes)->Arg(0)->Arg(600000)->Arg(30000)->Arg(600)->Arg(10)->Unit(benchmark::kMillisecond);

void scrollOfSixteenLanes(benchmark::State& state) {
    DocumentModel& document = bed().document;
    document.setView(shown(document, state.range(0)));
    for (auto _ : state) {
        if (document.view().end() >= double(document.total())) { document.setView(shown(document, state.range(0))); }
        document.setView(scrolled(document.view(), document.view().length / 80));
        Bench::drawn();
    }
}
BENCHMARK(scrollOfSixteenLanes)->Arg(600000)->Arg(30000)->Arg(600)->Arg(10)->Unit(benchmark::kMillisecond);

// With all tiles there.
void scrollOfSixteenSpectrograms(benchmark::State& state) {
    Bench& on = bed();
    on.window.actions().spectrum->trigger();
    on.document.setView(shown(on.document, 600));
    SpectrumLanes& spectrum = on.window.wave().lanes().spectrum();
    double sign = 0;
    const auto step = [&] {
        sign = 1 - sign;
        on.document.setView(scrolled(on.document.view(), (sign - 0.5) * on.document.view().length / 40));
        Bench::drawn();
    };
    step();
    while (spectrum.missing() > 0) { Bench::drawn(); }
    for (auto _ : state) { step(); }
    on.window.actions().spectrum->trigger();
}
BENCHMARK(scrollOfSixteenSpectrograms)->Unit(benchmark::kMillisecond);

void playheadOverSixteenLanes(benchmark::State& state) {
    EditorWaveView& wave = bed().window.wave();
    for (auto _ : state) { wave.repaint(QRect(300, 0, 4, wave.height())); }
}
BENCHMARK(playheadOverSixteenLanes)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace brindlehum

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const brindlehum::ThemeController theme;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    std::fflush(nullptr);
    std::_Exit(0);  // the documents of the process are gone with it
}
