// The editor on half an hour of stereo, without its window: opening, editing, undoing, hearing, and analysing again.
// Files and journals lie in $TMPDIR, which should be a RAM disk: 4 GB. Wall times; sox does the same jobs as a child.
#include "editor/model/editor_model.h"

#include <malloc.h>

#include <cstdio>
#include <cstdlib>
#include <random>

#include "analysis/piece.h"
#include "audio/write/wav_file_writer.h"
#include "platform/qt_main_loop.h"
#include "support/listener.h"

using namespace brindlehum;
using namespace brindlehum::bench;

namespace {

constexpr int rate = 48000;
constexpr int starts = 100;
const std::filesystem::path folder = std::filesystem::temp_directory_path() / "brindlehum-bench-editor";

double since(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

double secondsFor(const std::function<void()>& work) {
    const auto start = Clock::now();
    work();
    return since(start);
}

void writePiece(const std::filesystem::path& file, double seconds, int times) {
    const Planes piece = makePiece(seconds, rate, 2);
    WavFileWriter writer(file, rate, 2, 3, "");
    for (int i = 0; i < times; ++i) { writer.appendAll(piece); }
    writer.finish();
}

size_t bytesInUse() {
    const struct mallinfo2 info = ::mallinfo2();
    return info.uordblks + info.hblkhd;
}

class Bench {
public:
    DocumentModel& document() { return editor_.document(); }
    MusicModel& music() { return editor_.music(); }

    double open(const std::filesystem::path& file) {
        bool isOpen = false;
        const auto told =
            QObject::connect(&document(), &DocumentModel::opened, [&] { isOpen = document().doc().has_value(); });
        const double seconds = secondsFor([&] {
            document().open(file);
            until([&] { return isOpen || editor_.message().text(); });
        });
        QObject::disconnect(told);
        return seconds;
    }
    void rest() {
        document().finish(60);
        until([&] { return music().analysis() && !music().isStale() && !music().isAnalyzing() && !document().busy(); });
    }
    double finish() {
        return secondsFor([&] { until([&] { return !document().busy(); }); });
    }

    void edits() {
        struct {
            double cut = 0, paste = 0, undo = 0;
        } slowest;
        const int64_t minute = 60 * rate;
        for (int i = 0; i < 20; ++i) {
            document().setSelection(FrameRange{i * minute + 12345, (i + 1) * minute});
            slowest.cut = std::max(slowest.cut, secondsFor([&] { document().cut(); }));
            document().setCursor(5 * minute + i);
            slowest.paste = std::max(slowest.paste, secondsFor([&] { document().paste(); }));
            slowest.undo = std::max(slowest.undo, secondsFor([&] { document().undo(); }));
            document().undo();
        }
        std::printf("cut, paste, undo of a minute, slowest of 20: %.2f, %.2f, %.2f ms\n", 1e3 * slowest.cut,
                    1e3 * slowest.paste, 1e3 * slowest.undo);
    }

    void memory() {
        rest();
        const size_t before = bytesInUse();
        const double whole = double(document().total()) * 2 * sizeof(float);
        for (int i = 0; i < 16; ++i) {
            document().setSelection(FrameRange{(60 + 90 * i) * rate, (61 + 90 * i) * rate});
            document().apply("reverse");
            finish();
        }
        rest();
        std::printf("memory of 16 effects of a second each: %.1f %% of the document\n",
                    100 * (double(bytesInUse()) - double(before)) / whole);
        document().setSelection(std::nullopt);
    }

    void pins() {
        double slowest = 0;
        for (int i = 1; i <= 40; ++i) {
            const int64_t frame = document().total() / 60 * i;
            slowest = std::max(slowest, secondsFor([&] { music().movePin(PinKind::introEnd, frame); }));
        }
        std::printf("replanning while a pin is dragged, slowest of 40 (%zu bars, %zu plans): %.1f ms\n",
                    music().boundaries().size(), music().plans().size(), 1e3 * slowest);
    }

    void latency() {
        std::mt19937 random(2);
        std::vector<double> ms;
        EditorTransport& transport = editor_.transport();
        for (int i = 0; i < starts; ++i) {
            if (audio_.listener) { audio_.listener->awaitSilence(); }
            transport.stop();
            until([&] { return !engine_.isRunning() || audio_.listener->isSilent(); });
            if (!audio_.listener) { engine_.configure(std::nullopt, false); }
            audio_.listener->arm();
            const auto began = Clock::now();
            transport.play(int64_t(random() % uint64_t(document().total() / 2)));
            until([&] { return audio_.listener->heardAt() != 0; });
            ms.push_back(double(audio_.listener->heardAt() - began.time_since_epoch().count()) / 1e6);
            until([&] { return transport.isPlaying(); });
        }
        transport.stop();
        std::ranges::sort(ms);
        std::printf("play to sound, %d starts: median %.1f, p95 %.1f, longest %.1f ms\n", starts, ms[starts / 2],
                    ms[starts * 95 / 100], ms.back());
    }

    // From the edit until the bars are those of the edited sound, without the rest of the hands.
    void analysis() {
        rest();
        document().setSelection(FrameRange{rate, 3 * rate});
        const double seconds = secondsFor([&] {
            document().cut();
            until([&] { return !music().isStale() && !music().isAnalyzing(); });
        });
        std::printf("analysis of ten minutes after an edit: %.2f s\n", seconds - MusicModel::restSeconds);
    }

    void tail() {
        document().setSelection(FrameRange{60 * rate, 70 * rate});
        const double seconds = secondsFor([&] {
            document().run(Macro::verbTail);
            finish();
        });
        std::printf("verb tail of 10 s: %.2f s, %s\n", seconds, document().history().names().back().c_str());
    }

    // Opening, one edit of the whole, and saving, beside sox from file to file.
    void beside(const char* what, const std::string& soxEffect, const std::function<void()>& edit) {
        const auto source = folder / "piece.wav";
        double opening = 0;
        double editing = 0;
        bool isSaved = false;
        opening = open(source);
        editing = secondsFor([&] {
            edit();
            finish();
        });
        const double saving = secondsFor([&] {
            document().saveAs(folder / "ours.wav", [&] { isSaved = true; });
            until([&] { return isSaved; });
        });
        const std::string command =
            "sox " + source.string() + " -b 24 " + (folder / "theirs.wav").string() + " " + soxEffect;
        const double theirs = secondsFor([&] {
            if (std::system(command.c_str()) != 0) { std::puts("sox failed"); }
        });
        std::printf("%s: open %.2f, edit %.2f, save %.2f s; sox %s: %.2f s\n", what, opening, editing, saving,
                    soxEffect.c_str(), theirs);
    }

private:
    QtMainLoop loop_;
    ListeningSystem audio_;
    MemoryDefaults defaults_;
    SettingsStore settings_{defaults_};
    PlaybackEngine engine_{audio_, loop_};
    EditorModel editor_{engine_, settings_, loop_, folder / "journals"};
};

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    std::filesystem::create_directories(folder);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    writePiece(folder / "piece.wav", 599, 3);  // the editor takes files below 30 minutes
    writePiece(folder / "ten.wav", 600, 1);
    {
        Bench bench;
        for (int i = 0; i < 3; ++i) { std::printf("open: %.2f s\n", bench.open(folder / "piece.wav")); }
        bench.memory();
        bench.edits();
        bench.rest();
        bench.pins();
        bench.latency();
        bench.tail();
        bench.open(folder / "ten.wav");
        bench.analysis();
        DocumentModel& document = bench.document();
        bench.beside("without a minute at each end", "trim 60 -60", [&] {
            document.setSelection(FrameRange{60 * rate, document.total() - 60 * rate});
            document.trim();
        });
        bench.beside("reversed", "reverse", [&] { document.apply("reverse"); });
        bench.beside("normalized", "gain -n", [&] { document.apply("normalize"); });
        document.close();
    }
    std::filesystem::remove_all(folder);
    return 0;
}
