// Drags from the player into a window that takes files, as another program would.
#include <QClipboard>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <fstream>

#include "ui/look/file_drag.h"
#include "ui/player/drag_handle.h"
#include "ui/player/drag_session.h"
#include "ui/player/export_bar.h"
#include "ui/player/player_view.h"
#include "window_fixture.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;
using Files = std::vector<fs::path>;

// Asks for the files when the pointer comes over it, and at the drop, as file managers do.
struct Target {
    bool isOver(const QMimeData& data) {
        files = FileDrag::localPaths(data);
        return !files.empty();
    }
    bool drop(const QMimeData& data) {
        if (!isOver(data)) { return false; }
        if (isOver(data)) { dropped.push_back(files); }
        return true;
    }
    Files files;
    std::vector<Files> dropped;
};

struct DragsOutTest : test::WindowTest {
    PlayerView view{player, model.settings(), WaveformView::Style::window};
    WaveformView& wave = view.waveform();
    Target target;
    fs::path rain;

    DragsOutTest() {
        model.settings().change([&](AppSettings& s) { s.pullsFolder = (folder / "Pulls").string(); });
        view.setGeometry(0, 0, 1000, 400);
        view.show();
        rain = file("rain.wav", 6);
    }
    void select() { player.transport().select(FrameRange{12000, 36000}); }
    QPoint at(double share) { return {int(share * wave.width()), 20}; }

    // Presses and moves on the widget, which begins a drag that ends as `end` says.
    void dragFrom(QWidget& widget, const QPoint& from, std::function<bool(const QMimeData&)> end,
                  Qt::KeyboardModifiers keys = {}) {
        view.drags().drag = [end](QWidget*, const std::unique_ptr<QMimeData> data, const FileDrag::Picture& picture) {
            EXPECT_FALSE(picture.image.isNull());
            return end(*data);
        };
        QTest::mousePress(&widget, Qt::LeftButton, keys, from);
        QTest::mouseMove(&widget, from + QPoint(20, 6));
        QTest::mouseRelease(&widget, Qt::LeftButton, keys, from + QPoint(20, 6));
    }
    std::function<bool(const QMimeData&)> drop = [this](const QMimeData& data) { return target.drop(data); };
    bool idle() {
        return settle([&] { return player.dragOut().queue().isIdle(); });
    }
    // Names in the pulls folder, hidden ones included.
    std::vector<std::string> pulls() const {
        std::vector<std::string> names;
        std::error_code none;
        for (const auto& entry : fs::recursive_directory_iterator(folder / "Pulls", none)) {
            if (!entry.is_directory()) { names.push_back(entry.path().filename().string()); }
        }
        return names;
    }
    std::string message() { return player.message().text().value_or(""); }
};

TEST_F(DragsOutTest, WhatIsDraggedDependsOnWhereItBegins) {
    ASSERT_TRUE(load(rain));
    select();
    player.dragOut().setDragExport(DragExport::bed(LayoutID::l51));
    auto* handle = view.findChild<DragHandle*>();
    struct Case {
        const char* what;
        QWidget* widget;
        QPoint from;
        Qt::KeyboardModifiers keys;
        std::string file;
    };
    for (const Case& one : {Case{"inside the selection", &wave, at(0.5), {}, "rain_0.250-0.750s_51.wav"},
                            Case{"with Control", &wave, at(0.5), Qt::ControlModifier, "rain_51.wav"},
                            Case{"with Control, outside", &wave, at(0.9), Qt::ControlModifier, "rain_51.wav"},
                            Case{"the handle", handle, QPoint(8, 8), {}, "rain_51.wav"}}) {
        SCOPED_TRACE(one.what);
        target.dropped.clear();
        dragFrom(*one.widget, one.from, drop, one.keys);
        ASSERT_EQ(target.dropped.size(), 1U) << message();
        ASSERT_EQ(target.dropped[0].size(), 1U);
        EXPECT_EQ(target.dropped[0][0].filename(), one.file);
        EXPECT_EQ(AudioFileInfo::load(target.dropped[0][0]).channels, 6);
        EXPECT_EQ(wave.gesture(), WaveformGesture::Gesture(WaveformGesture::Idle{}));
    }
    EXPECT_EQ(pulls().size(), 2U) << "the same request is made once";
    EXPECT_EQ(player.transport().selection(), (FrameRange{12000, 36000}));
}

TEST_F(DragsOutTest, WhatNobodyTakesLeavesNothingBehind) {
    ASSERT_TRUE(load(rain));
    player.dragOut().setDragExport(DragExport::bed(LayoutID::l714));
    struct Case {
        const char* what;
        std::function<void()> act;
    };
    for (const Case& one :
         {Case{"a click", [&] { QTest::mouseClick(&wave, Qt::LeftButton, {}, at(0.5)); }},
          Case{"a click on the handle", [&] { QTest::mouseClick(view.findChild<DragHandle*>(), Qt::LeftButton); }},
          Case{"Escape", [&] { dragFrom(wave, at(0.5), [](const auto&) { return false; }); }}}) {
        SCOPED_TRACE(one.what);
        select();
        one.act();
        ASSERT_TRUE(idle());
        EXPECT_EQ(pulls(), std::vector<std::string>());
        EXPECT_EQ(message(), "");
    }
}

TEST_F(DragsOutTest, AnotherSoundMayBeLoadedDuringADrag) {
    const auto next = file("next.wav", 2);
    ASSERT_TRUE(load(rain));
    select();
    dragFrom(wave, at(0.5), [&](const QMimeData& data) {
        EXPECT_TRUE(load(next));
        return drop(data);
    });
    ASSERT_EQ(target.dropped.size(), 1U) << message();
    EXPECT_EQ(target.dropped[0][0].filename(), "rain_0.250-0.750s.wav");
}

TEST_F(DragsOutTest, ADropThatTheTargetCouldNotYetAcceptIsToldOf) {
    ASSERT_TRUE(load(rain));
    select();
    dragFrom(wave, at(0.5), [&](const QMimeData& data) {
        EXPECT_TRUE(target.isOver(data));
        QTest::mouseRelease(&wave, Qt::LeftButton);
        return false;
    });
    ASSERT_TRUE(idle());
    EXPECT_EQ(message(), "rain_0.250-0.750s.wav is ready: drag again");
}

TEST_F(DragsOutTest, AFailureIsSaidAndTheNextDragSucceeds) {
    ASSERT_TRUE(load(rain));
    select();
    std::ofstream(folder / "Pulls") << "a file in the folder's place";
    dragFrom(wave, at(0.5), drop);
    EXPECT_TRUE(target.dropped.empty());
    EXPECT_TRUE(message().find("Pulls") != std::string::npos) << message();
    ASSERT_TRUE(idle());
    fs::remove(folder / "Pulls");
    fs::rename(rain, folder / "away.wav");
    dragFrom(wave, at(0.5), drop);
    EXPECT_TRUE(target.dropped.empty());
    EXPECT_TRUE(message().find("rain.wav") != std::string::npos) << message();
    EXPECT_EQ(pulls(), std::vector<std::string>());
    fs::rename(folder / "away.wav", rain);
    dragFrom(wave, at(0.5), drop);
    EXPECT_EQ(target.dropped.size(), 1U) << message();
}

TEST_F(DragsOutTest, RowsLeaveInTheChosenFormWhereItIsOffered) {
    ASSERT_TRUE(load(rain));
    player.dragOut().setDragExport(DragExport::bed(LayoutID::stereo));
    const auto wind = file("wind.wav", 6);
    const auto mono = file("mono.wav", 1);
    std::ofstream(folder / "broken.wav") << "no sound";
    const Files rows = {wind, mono, folder / "dir", folder / "broken.wav"};
    promisedForms(player.dragOut(), rows);
    ASSERT_TRUE(idle());
    EXPECT_EQ(pulls(), std::vector<std::string>()) << "nobody asked";
    ASSERT_TRUE(target.drop(*promisedForms(player.dragOut(), rows)));
    ASSERT_EQ(target.files.size(), 3U) << message();
    EXPECT_EQ(target.files[0].filename(), "wind_st.wav");
    EXPECT_EQ(AudioFileInfo::load(target.files[0]).channels, 2);
    EXPECT_EQ(target.files[1], mono);
    EXPECT_EQ(target.files[2], folder / "dir");
    EXPECT_TRUE(message().find("broken.wav") != std::string::npos) << message();
    const auto job = player.dragOut().startExport(wind);
    EXPECT_TRUE(job->isOver()) << "made once";
    player.sound().setFormatOverride(SourceFormat::discrete(6));
    EXPECT_NE(player.dragOut().startExport(wind), job) << "it may be read another way now";
}

TEST_F(DragsOutTest, TheKeyboardCopiesForFileManagers) {
    ASSERT_TRUE(load(rain));
    player.dragOut().setDragExport(DragExport::binaural());
    QTest::keyClick(view.findChild<DragHandle*>(), Qt::Key_Space);
    ASSERT_TRUE(idle());
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    const auto files = FileDrag::localPaths(*data);
    ASSERT_EQ(files.size(), 1U) << message();
    EXPECT_EQ(files[0].filename(), "rain_bin.wav");
    EXPECT_EQ(AudioFileInfo::load(files[0]).channels, 2);
    EXPECT_EQ(data->data("x-special/gnome-copied-files").toStdString(), "copy\nfile://" + files[0].string());
    EXPECT_TRUE(message().starts_with("Copied rain_bin.wav")) << message();
}

TEST_F(DragsOutTest, TheMenuGroupsTheFormsAndNamesThePreset) {
    model.settings().change([](AppSettings& s) { s.pullsFolder = ""; });
    ASSERT_TRUE(load(file("two.wav", 2)));
    player.listening().setUpmix({true, UpmixPreset::film, params(UpmixPreset::film)});
    auto* button = named<QToolButton>(view, "Drag as");
    Q_EMIT button->menu()->aboutToShow();
    QStringList texts;
    for (const auto* action : button->menu()->actions()) {
        texts << (action->isSeparator() ? "-" : (action->isChecked() ? "*" : "") + action->text());
    }
    EXPECT_EQ(texts, (QStringList{"*Original", "-", "9.1.6 upmix (Film)", "7.1.4 upmix (Film)", "5.1 upmix (Film)"}));
    UpmixParams airy = params(UpmixPreset::film);
    airy.heightDB += 3;
    model.settings().change([&](AppSettings& s) { s.upmixPresets = {{"Attic", UpmixPreset::film, airy}}; });
    player.listening().setUpmix({true, UpmixPreset::film, airy, "Attic"});
    const auto upmix = DragExport::upmix(LayoutID::l714);
    EXPECT_EQ(player.dragOut().formName(upmix), "7.1.4 upmix (Attic)");
    airy.heightDB += 1;
    player.listening().setUpmix({true, UpmixPreset::film, airy, "Attic"});
    EXPECT_EQ(player.dragOut().formName(upmix), "7.1.4 upmix (Attic, changed)");
}

TEST_F(DragsOutTest, ALongExportShowsProgressAndThenItsFolder) {
    auto* bar = new ExportBar(player.dragOut().progress(), player.message(),
                              [this](const auto& files) { session.files.reveal(files); });
    view.addToMessage(bar);
    const auto longOne = folder / "long.wav";
    test::writeAudio(longOne, test::noisePlanes(2, 48000 * 60));
    ASSERT_TRUE(load(longOne));
    player.listening().setUpmix({true, UpmixPreset::film, params(UpmixPreset::film)});
    player.dragOut().setDragExport(DragExport::upmix(LayoutID::l714));
    const auto begin = [&] {
        player.dragOut().exportToPulls(false);
        EXPECT_FALSE(bar->isVisible()) << "it may be short";
        loop.advance(ExportProgress::quietSeconds);
        EXPECT_TRUE(named<QPushButton>(*bar, "Cancel the export")->isVisible());
    };
    begin();
    QTest::mouseClick(named<QPushButton>(*bar, "Cancel the export"), Qt::LeftButton);
    ASSERT_TRUE(idle());
    EXPECT_FALSE(bar->isVisible());
    EXPECT_EQ(pulls(), std::vector<std::string>());
    begin();
    // Too early for a drop; the same export goes on for the next drag.
    EXPECT_FALSE(player.dragOut().awaitFile(player.dragOut().startExport(false), 0));
    EXPECT_EQ(message(), "The file is still being rendered: drag again in a moment");
    ASSERT_TRUE(idle());
    EXPECT_TRUE(message().starts_with("long_714up-film.wav is ready: drag again")) << message();
    QTest::mouseClick(named<QPushButton>(*bar, "Show in Folder"), Qt::LeftButton);
    ASSERT_EQ(session.files.shown.size(), 1U);
    EXPECT_EQ(player.dragOut().exportForDrag(false), session.files.shown[0]);
    ASSERT_TRUE(load(rain));
    EXPECT_FALSE(bar->isVisible());
}

}  // namespace
}  // namespace brindlehum
