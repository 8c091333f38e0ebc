// The editor's window: what its menus offer, its history, what is asked before edits go, and what it shows meanwhile.
#include "ui/editor/editor_window.h"

#include <QDropEvent>
#include <QListWidget>
#include <QMenuBar>
#include <QMimeData>
#include <QTest>
#include <QToolButton>
#include <random>

#include "dsp/edit_ops.h"
#include "editor/document/clipboard.h"
#include "ui/editor/editor_actions.h"
#include "ui/editor/editor_keys.h"
#include "ui/editor/editor_wave_view.h"
#include "ui/editor/spectrum_lanes.h"
#include "window_fixture.h"

namespace brindlehum {
namespace {

struct EditorWindowTest : test::WindowTest {
    EditorModel& editor = model.editor();
    DocumentModel& document = editor.document();
    EditorWindow window{editor, model.settings(), session.fileManager()};
    int asked = 0;
    EditorWindow::Leave answer = EditorWindow::Leave::cancel;

    EditorWindowTest() {
        window.askToLeave = [this](const QString&) { return ++asked, answer; };
        window.show();
    }
    ~EditorWindowTest() override {
        document.close();
        EditorClipboard::clear();
    }
    void open(int channels = 2) {
        window.open(file("Rain.wav", channels));
        ASSERT_TRUE(settle([&] { return document.doc() && !document.loading(); }));
    }
    QListWidget& history() { return *named<QListWidget>(window, "History"); }
    QStringList offered() {
        QStringList out;
        for (QAction* menu : window.menuBar()->actions()) {
            for (QAction* each : menu->menu()->actions()) {
                if (!each->menu() && !each->isSeparator() && each->isEnabled()) { out << each->text(); }
            }
        }
        return out;
    }
};

TEST_F(EditorWindowTest, MenusOfferOnlyWhatWouldDoSomething) {
    EXPECT_EQ(offered(), QStringList({"Open File…", "Close Window", "Spectrum", "Snap", "History", "Loop", "Pre"}));
    open();
    for (const char* each : {"Save As…", "Close Document", "Select All", "Reverse", "Verb Tail", "Play / Stop"}) {
        EXPECT_TRUE(offered().contains(each)) << each;
    }
    for (const char* each : {"Cut", "Delete", "Trim", "Paste", "Undo", "Hear the Loop Seam", "Click"}) {
        EXPECT_FALSE(offered().contains(each)) << each;
    }
    QTest::keyClick(&window.wave(), Qt::Key_A, Qt::ControlModifier);
    for (const char* each : {"Cut", "Delete", "Trim"}) { EXPECT_TRUE(offered().contains(each)) << each; }
    document.copy();
    EXPECT_TRUE(offered().contains("Paste"));
}

TEST_F(EditorWindowTest, ADroppedSoundIsOpenedAndUnsavedEditsAreAskedFor) {
    const auto drop = [this](const std::filesystem::path& dropped) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(QString::fromStdString(dropped.string()))});
        const QPoint at = window.rect().center();
        QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&window, &enter);
        if (!enter.isAccepted()) { return false; }
        QDropEvent release(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&window, &release);
        return release.isAccepted();
    };
    EXPECT_FALSE(drop("/etc/hostname"));
    EXPECT_TRUE(drop(file("Rain.wav", 2)));
    ASSERT_TRUE(settle([&] { return document.doc() && !document.loading(); }));
    document.apply("reverse");
    ASSERT_TRUE(settle([&] { return document.isDirty(); }));
    EXPECT_TRUE(drop(file("Wind.wav", 2)));
    EXPECT_EQ(asked, 1);
    EXPECT_EQ(document.doc()->url.filename(), "Rain.wav") << "the answer was to cancel";
}

TEST_F(EditorWindowTest, TheHistoryNamesEachStepAndGoesToIt) {
    open();
    document.setSelection(FrameRange{1000, 2000});
    document.cut();
    document.paste();
    EXPECT_EQ(window.actions().undo->text(), "Undo Paste");
    ASSERT_EQ(history().count(), 3);
    EXPECT_EQ(history().item(0)->text() + "," + history().item(1)->text() + "," + history().item(2)->text(),
              "Opened,Cut,Paste");
    QTest::mouseClick(history().viewport(), Qt::LeftButton, {}, history().visualItemRect(history().item(1)).center());
    EXPECT_EQ(document.total(), 47000);
    EXPECT_EQ(window.actions().redo->text(), "Redo Paste");
    QTest::keyClick(&history(), Qt::Key_Up);
    EXPECT_EQ(document.total(), 48000);
    EXPECT_FALSE(document.isDirty());
    EXPECT_EQ(history().currentRow(), 0);
}

TEST_F(EditorWindowTest, ClosingAsksOnlyForUnsavedEdits) {
    open();
    document.setSelection(FrameRange{1000, 2000});
    document.remove();
    window.close();
    EXPECT_EQ(asked, 1);
    EXPECT_TRUE(window.isVisible() && document.isDirty()) << "Cancel keeps both";
    window.open(file("Wind.wav", 1));
    EXPECT_EQ(asked, 2);
    EXPECT_FALSE(document.busy());
    answer = EditorWindow::Leave::discard;
    window.close();
    EXPECT_FALSE(window.isVisible() || document.doc());
    window.close();
    EXPECT_EQ(asked, 3);
}

TEST_F(EditorWindowTest, EscapeTakesADragBackBeforeItClearsTheSelection) {
    open();
    document.setSelection(FrameRange{1000, 2000});
    EditorWaveView& wave = window.wave();
    QTest::mousePress(&wave, Qt::LeftButton, {}, {100, 60});
    QTest::mouseMove(&wave, {200, 60});
    QMouseEvent move(QEvent::MouseMove, QPointF(200, 60), QPointF(200, 60), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(&wave, &move);
    ASSERT_TRUE(std::holds_alternative<EditorGesture::Selecting>(wave.gesture()));
    QTest::keyClick(&wave, Qt::Key_Escape);
    EXPECT_EQ(document.selection(), (FrameRange{1000, 2000}));
    QTest::keyClick(&wave, Qt::Key_Escape);
    EXPECT_FALSE(document.selection());
    QTest::mouseDClick(&wave, Qt::LeftButton, {}, {100, 60});
    EXPECT_EQ(document.selection(), (FrameRange{0, document.total()})) << "without bars, a double click selects all";
}

TEST_F(EditorWindowTest, SpacePlaysAndPressesOnlyTheButtonThatTabHasLedTo) {
    open();
    auto* solo = named<QToolButton>(window, "Solo L");
    QTest::mouseClick(solo, Qt::LeftButton);
    EXPECT_EQ(editor.transport().lanes().solo, std::set{0});
    EXPECT_TRUE(window.wave().hasFocus());
    solo->setFocus(Qt::TabFocusReason);
    QTest::keyClick(solo, Qt::Key_Space);
    EXPECT_TRUE(editor.transport().lanes().solo.empty());
    EXPECT_FALSE(settle([&] { return editor.transport().queue().pending() == 0; }) && editor.transport().isPlaying());
    QTest::keyClick(&window.wave(), Qt::Key_Space);
    EXPECT_TRUE(settle([&] { return editor.transport().isPlaying(); }));
}

TEST_F(EditorWindowTest, AFileThatLoadsIsShownAndCannotBeEdited) {
    open();
    document.setSelection(FrameRange{1000, 2000});
    const auto path = folder / "Long.wav";
    test::writeAudio(path, test::noisePlanes(1, 400'000));
    int shown = 0;
    QObject::connect(&document, &DocumentModel::changed, &window, [&] {
        if (!document.loading()) { return; }
        ++shown;
        EXPECT_EQ(document.loading()->total, 400'000);
        EXPECT_GE(document.loading()->soFar.frames(), SoundBlock::longest);
        EXPECT_TRUE(window.windowTitle().startsWith("Long.wav"));
        EXPECT_FALSE(window.actions().cut->isEnabled() || window.actions().play->isEnabled());
        window.wave().grab();
    });
    window.open(path);
    document.cancel();
    EXPECT_TRUE(window.actions().cut->isEnabled()) << "the document from before stays";
    window.open(path);
    ASSERT_TRUE(settle([&] { return document.doc()->url == path; }));
    EXPECT_GT(shown, 0);
    EXPECT_FALSE(document.loading());
}

TEST_F(EditorWindowTest, APreviewIsMadeAsideAndANewerOneOvertakesIt) {
    open();
    document.setSelection(FrameRange{1000, 30000});
    int old = 0, heard = 0;
    document.preview("reverse", [&](const Sound&) { ++old; });
    document.preview(Macro::mono, [&](const Sound& sound) {
        ++heard;
        EXPECT_EQ(sound.frames(), 29000);
        EXPECT_EQ(sound.gather()[0], sound.gather()[1]);
    });
    EXPECT_EQ(heard, 0) << "the window goes on meanwhile";
    ASSERT_TRUE(settle([&] { return heard == 1; }));
    document.preview("reverse", [&](const Sound&) { ++old; });
    document.remove();
    ASSERT_TRUE(settle([&] { return !document.isPreviewing(); }));
    EXPECT_EQ(old, 0) << "neither an overtaken one nor one of an earlier sound is heard";
}

TEST(EditorKeys, DoWhatTheTableSays) {
    using EditorKeys::Key;
    const std::vector<int64_t> bars = {0, 1000, 2000, 3000};
    const EditorKeys::Surface plain{5000, 1500, {}, 10, bars};
    EditorKeys::Surface selected = plain, free = plain;
    selected.selection = FrameRange{1500, 2500};
    free.stops = {};
    const struct {
        const char* what;
        const EditorKeys::Surface& on;
        Key key;
        bool extends;
        EditorKeys::Moved after;
    } cases[] = {
        {"a step", plain, Key::right, false, {1510, {}}},
        {"to the bar before", plain, Key::leftFar, false, {1000, {}}},
        {"to the bar after", plain, Key::rightFar, false, {2000, {}}},
        {"without bars, ten steps", free, Key::rightFar, false, {1600, {}}},
        {"out of a selection on its right", selected, Key::right, false, {2500, {}}},
        {"out of a selection on its left", selected, Key::left, false, {1500, {}}},
        {"Shift starts a selection", plain, Key::left, true, {1490, FrameRange{1490, 1500}}},
        {"Shift moves the cursor's edge", selected, Key::rightFar, true, {2000, FrameRange{2000, 2500}}},
        {"and over the other edge", selected, Key::end, true, {5000, FrameRange{2500, 5000}}},
        {"home", selected, Key::home, false, {0, {}}},
    };
    for (const auto& c : cases) { EXPECT_EQ(EditorKeys::moved(c.key, c.extends, c.on), c.after) << c.what; }
}

TEST(LanePicture, AScrollDrawsTheNewColumnsAndEqualsAPictureDrawnAnew) {
    std::minstd_rand random(7);
    std::vector<std::vector<float>> samples(3, std::vector<float>(300'000));
    for (auto& lane : samples) {
        for (float& x : lane) { x = float(random() % 2001) / 1000 - 1; }
    }
    const Sound sound(samples);
    for (const double perColumn : {3.0, 100.0, 700.0}) {
        const auto wanted = [&](double first) {
            return LanePicture::Wanted{
                sound, 1, {300'000, first * perColumn, 120 * perColumn, false}, {120, 90}, Qt::red};
        };
        LanePicture scrolled;
        scrolled.draw(wanted(50));
        for (const auto& [first, drawn] :
             {std::pair(57, 7), std::pair(40, 17), std::pair(40, 0), std::pair(200, 120)}) {
            LanePicture anew;
            EXPECT_EQ(scrolled.draw(wanted(first)), anew.draw(wanted(first))) << first << " at " << perColumn;
            EXPECT_EQ(scrolled.drawn(), drawn);
        }
    }
    // A column from its lowest to its highest sample, in its own lane.
    std::vector<float> step(1000, 0.0F);
    step[500] = 1, step[501] = -0.5F;
    LanePicture one;
    const QImage& image = one.draw({Sound(std::vector(1, step)), 1, VisibleRange::all(1000), {100, 100}, Qt::red});
    for (const auto& [x, top, bottom] : {std::tuple(49, 50, 50), std::tuple(50, 4, 72), std::tuple(51, 50, 50)}) {
        int first = 100, last = 0;
        for (int y = 0; y < 100; ++y) {
            if (image.pixel(x, y) != 0) { first = std::min(first, y), last = std::max(last, y); }
        }
        EXPECT_EQ(std::pair(first, last), std::pair(top, bottom)) << x;
    }
}

TEST(SpectrumLanes, ShowAToneInItsRowAndMakeAnewOnlyWhatAnEditChanged) {
    constexpr double rate = 48000;
    std::vector<float> tone(200'000);
    for (size_t i = 0; i < tone.size(); ++i) { tone[i] = float(std::sin(double(i) * 2 * 3.14159265 * 1000 / rate)); }
    const Sound sound(std::vector(2, tone));
    ManualMainLoop loop;
    SpectrumLanes lanes(loop);
    QImage canvas(400, 200, QImage::Format_RGB32);
    uint64_t revision = 0;
    const auto paint = [&](const Sound& shown, bool isLinear) {
        QPainter painter(&canvas);
        lanes.paint(painter, QRectF(0, 0, 400, 200), 1,
                    {shown, revision, VisibleRange::all(200'000), {rate, isLinear}});
        return lanes.missing();
    };
    for (const bool isLinear : {false, true}) {
        ++revision;
        // 256 frames a column, 128 columns a tile, two lanes.
        EXPECT_EQ(paint(sound, isLinear), 2U * 7);
        lanes.queue().drain();
        loop.drain();
        EXPECT_EQ(paint(sound, isLinear), 0U);
        int brightest = 0;
        for (int y = 0; y < 100; ++y) {
            if (qGray(canvas.pixel(200, 100 + y)) > qGray(canvas.pixel(200, 100 + brightest))) { brightest = y; }
        }
        EXPECT_NEAR(brightest, 100 * (1 - SpectrumAxis{rate, isLinear}.shareOf(1000)), 1) << isLinear;
        ++revision;
        EXPECT_EQ(paint(sound, isLinear), 0U) << "the same samples";
    }
    ++revision;
    EXPECT_EQ(paint(EditOps::silence(sound, 150'000, 151'000), true), 2U) << "one tile a lane";
    lanes.clear();
    EXPECT_EQ(lanes.held(), 0U) << "no tile keeps the samples of a closed document";
    for (const bool dark : {true, false}) {
        const auto colors = spectrumColors(dark);
        for (size_t i = 8; i < colors.size(); i += 8) {
            EXPECT_EQ(qGray(colors[i]) > qGray(colors[i - 8]), dark) << i << " of " << dark;
        }
    }
}

}  // namespace
}  // namespace brindlehum
