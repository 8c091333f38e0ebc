// The file manager's selection and its Space key: what is read when, what it does to the player.
#include "app_fixture.h"

namespace brindlehum {
namespace {

using testing::ElementsAre;
using Path = std::filesystem::path;
using Outcome = SelectionReading::Outcome;

struct Tracked : testing::Test {
    ManualMainLoop loop;
    ScriptedWatch watch;
    FinderTracker finder{&watch, loop};
    std::vector<std::string> selections;  // "-" for no sound
    std::vector<std::string> states;      // "1 x" or "0 x", "-" for no frame
    std::vector<bool> denials;

    Tracked() {
        watch.shown = {{1, {10, 20, 800, 600}}};
        finder.onSelection = [this](const auto& file) { selections.push_back(file ? file->string() : "-"); };
        finder.onState = [this](bool active, const auto& frame) {
            states.push_back(std::to_string(active) + " " + (frame ? std::to_string(frame->x) : "-"));
        };
        finder.onAutomationDenied = [this](bool denied) { denials.push_back(denied); };
        finder.start();
    }
    void come(bool isFront) {
        watch.front = isFront;
        watch.heard.front();
        loop.advance(0.001);
    }
    void select(std::vector<Path> paths) {
        watch.selected = std::move(paths);
        watch.heard.selection();
        loop.advance(0.05);
    }
};

TEST_F(Tracked, TheFirstSoundOfASelectionIsReportedOnceForEachChange) {
    come(true);
    std::vector<Path> many(40, "/t.txt");
    many.emplace_back("/late.wav");
    const struct {
        std::vector<Path> paths;
        const char* reported;
    } cases[] = {{{"/a.wav"}, "/a.wav"},
                 {{"/folder", "/b.WAV", "/c.wav"}, "/b.WAV"},
                 {{"/t.txt"}, "-"},
                 {{"/a.wav", "/t.txt"}, "/a.wav"},
                 {{"/a.wav"}, "/a.wav"},
                 {many, "-"},
                 {{}, "-"}};
    for (const auto& c : cases) {
        selections.clear();
        select(c.paths);
        loop.advance(2);
        EXPECT_THAT(selections, ElementsAre(c.reported));
        EXPECT_EQ(finder.currentAudio().value_or("-"), c.reported);
    }
    select({"/a.wav"});
    come(false);
    EXPECT_EQ(finder.currentAudio(), "/a.wav");
    selections.clear();
    come(true);
    loop.advance(2);
    EXPECT_TRUE(selections.empty());
}

TEST_F(Tracked, ABurstOfEventsReadsOnceAndNothingIsReadInOtherPrograms) {
    come(true);
    watch.readings = 0;
    for (int i = 0; i < 20; ++i) {
        watch.heard.selection();
        watch.heard.windows();
        loop.advance(0.02);
    }
    loop.advance(0.03);
    EXPECT_EQ(watch.readings, 2) << "the first at once, the others together";
    watch.holds = true;
    finder.requestSelection(0);
    loop.advance(0.01);
    finder.requestSelection(0);
    loop.advance(0.01);
    EXPECT_EQ(watch.readings, 3);
    std::string pressed;
    finder.whenSettled(1, [&] { pressed += "one "; });
    finder.whenSettled(1, [&] { pressed += "two"; });
    EXPECT_EQ(pressed, "");
    watch.holds = false;
    watch.selected = {"/new.wav"};
    watch.answer();
    EXPECT_EQ(pressed, "one two");
    EXPECT_EQ(watch.readings, 4) << "a change during a reading was lost";
    watch.holds = true;
    finder.requestSelection(0);
    come(false);
    watch.selected = {"/late.wav"};
    if (watch.pending) { watch.answer(); }
    watch.readings = 0;
    watch.heard.selection();
    loop.advance(60);
    EXPECT_EQ(watch.readings, 0);
    EXPECT_EQ(finder.currentAudio(), "/new.wav");
}

TEST_F(Tracked, TheFrontWindowIsTheTopmostOneThatIsLargeAndSeen) {
    const struct {
        std::vector<DesktopWindow> windows;
        const char* state;
    } cases[] = {{{{1, {1, 0, 300, 150}}}, "1 1"},
                 {{{1, {1, 0, 299, 900}}, {2, {2, 0, 900, 149}}, {3, {3, 0, 900, 900}}}, "1 3"},
                 {{{1, {1, 0, 900, 900}, 0.1}, {2, {2, 0, 900, 900}, 0.2}}, "1 2"},
                 {{}, "1 -"}};
    come(true);
    for (const auto& c : cases) {
        states.clear();
        watch.shown = c.windows;
        loop.advance(1);
        EXPECT_THAT(states, ElementsAre(c.state)) << "each change once";
    }
    finder.refreshFrame(true);
    EXPECT_EQ(states.size(), 2U);
    watch.shown = {{1, {7, 0, 900, 900}}};
    watch.heard.windows();
    states.clear();
    come(false);
    loop.advance(5);
    EXPECT_THAT(states, ElementsAre("0 7"));
}

TEST_F(Tracked, RefusalIsReportedAndHealsAndOtherFailuresKeepTheSelection) {
    come(true);
    select({"/a.wav"});
    for (const auto outcome : {Outcome::failed, Outcome::denied, Outcome::denied, Outcome::failed}) {
        watch.outcome = outcome;
        watch.selected = {"/b.wav"};
        loop.advance(0.6);
        EXPECT_EQ(finder.currentAudio(), "/a.wav");
    }
    watch.outcome = Outcome::read;
    loop.advance(0.6);
    EXPECT_EQ(finder.currentAudio(), "/b.wav");
    EXPECT_THAT(denials, ElementsAre(true, false));
}

class FileManagerSpace : public test::AppTest {
protected:
    ScriptedWatch& watch_ = session_.watch;
    ScriptedGrab& grab_ = session_.grab;
    ScriptedPreviewer& previewer_ = session_.previewer;
    Path a_ = sound("a.wav");
    Path b_ = sound("b.wav");

    Path sound(const std::string& name) {
        test::writeAudio(folder_ / name, test::noisePlanes(2, 48000));
        return folder_ / name;
    }
    void settle() {
        for (int turn = 0; turn < 4; ++turn) {
            app_.player().loader().drain();
            loop_.advance(0.05);
        }
    }
    void select(const Path& path) {
        watch_.selected = {path};
        watch_.heard.selection();
        settle();
    }
    void comeToFront() {
        watch_.front = true;
        watch_.heard.front();
        settle();
    }
};

TEST_F(FileManagerSpace, IsTakenOnlyForASelectedSoundThatTheSettingsLetPlay) {
    app_.settings().change([](AppSettings& s) { s.autoPlay = false; });
    app_.start(0);
    const Path text = folder_ / "t.txt";
    for (int bits = 0; bits < 32; ++bits) {
        const auto on = [bits](int bit) { return (bits >> bit & 1) != 0; };
        watch_.front = on(0);
        watch_.editing = on(1);
        watch_.selected = {on(2) ? a_ : text};
        app_.settings().change([&](AppSettings& s) {
            s.finderPanel = on(3);
            s.spacePlaysInFinder = on(4);
        });
        watch_.front = true;
        watch_.heard.front();
        settle();
        watch_.front = on(0);
        watch_.heard.front();
        watch_.heard.focus();
        settle();
        app_.player().stopAndReturn();
        const bool taken = on(0) && !on(1) && on(2) && on(3) && on(4);
        EXPECT_EQ(grab_.press(), taken) << bits;
        settle();
        EXPECT_EQ(transport_.isPlaying(), taken) << bits;
        app_.player().stopAndReturn();
    }
}

TEST_F(FileManagerSpace, PlaysAndStopsAndARepeatDoesNothing) {
    app_.settings().change([](AppSettings& s) { s.autoPlay = false; });
    app_.start(0);
    comeToFront();
    select(a_);
    EXPECT_EQ(loaded(), a_);
    EXPECT_FALSE(transport_.isPlaying());
    for (const bool plays : {true, false, true}) {
        EXPECT_TRUE(grab_.press());
        EXPECT_TRUE(grab_.press(true));
        settle();
        EXPECT_EQ(transport_.isPlaying(), plays);
    }
    // The selection has moved on, but its reading isn't there yet.
    watch_.selected = {b_};
    watch_.heard.selection();
    EXPECT_TRUE(grab_.press());
    settle();
    EXPECT_EQ(loaded(), b_);
    EXPECT_TRUE(transport_.isPlaying());
    // Without the panel, a selection isn't loaded.
    app_.settings().change([](AppSettings& s) { s.finderPanel = false; });
    select(a_);
    EXPECT_EQ(loaded(), b_);
    EXPECT_FALSE(grab_.armed);
}

TEST_F(FileManagerSpace, IsAskedForByPreviewWhereTheFileManagerDoesThat) {
    app_.start(0);
    watch_.previews = true;
    comeToFront();
    select(a_);
    app_.player().stopAndReturn();
    EXPECT_TRUE(previewer_.offered);
    EXPECT_FALSE(grab_.armed) << "a key waits for us without need";
    // A selection that hasn't been read yet is right, too: the file manager names the file.
    EXPECT_TRUE(previewer_.heard.show(b_, false));
    EXPECT_TRUE(previewer_.heard.show(b_, true));
    settle();
    EXPECT_EQ(loaded(), b_);
    EXPECT_TRUE(transport_.isPlaying());
    EXPECT_FALSE(previewer_.heard.show(folder_ / "picture.png", false));
    EXPECT_TRUE(previewer_.heard.show(b_, false));
    EXPECT_FALSE(transport_.isPlaying());
    previewer_.busy = true;  // the desktop's own previewer still runs
    previewer_.heard.ownership();
    EXPECT_TRUE(grab_.armed);
    select(folder_ / "t.txt");
    EXPECT_FALSE(previewer_.offered);
}

TEST_F(FileManagerSpace, WaitsForAccessAndABareDesktopLacksIt) {
    watch_.trusted = false;
    int changes = 0;
    QObject::connect(&app_, &AppModel::permissionsChanged, &app_, [&] { ++changes; });
    app_.start(0);
    loop_.advance(10);
    EXPECT_FALSE(app_.axTrusted());
    EXPECT_FALSE(grab_.started);
    {
        ScriptedSession late;  // its bus is found missing only after a while
        AppModel app({loop_, audio_, defaults_, late, folder_ / "Late.sqlite", folder_ / "late"});
        app.start(0);
        EXPECT_TRUE(app.axTrusted());
        late.watch.trusted = false;
        loop_.advance(2);
        EXPECT_FALSE(app.axTrusted());
        late.watch.trusted = true;
        loop_.advance(2);
        EXPECT_TRUE(app.axTrusted());
    }
    app_.requestAccessibility();
    EXPECT_EQ(watch_.clicks, 1);
    watch_.trusted = true;
    loop_.advance(2);
    EXPECT_TRUE(app_.axTrusted());
    EXPECT_TRUE(grab_.started);
    EXPECT_EQ(watch_.attachments, 1);
    EXPECT_EQ(changes, 1);
    ScriptedSession bare;
    bare.hasWatch = bare.hasGrab = bare.hasPreviewer = false;
    AppModel app({loop_, audio_, defaults_, bare, folder_ / "Other.sqlite", folder_ / "other"});
    app.start(0);
    loop_.advance(10);
    EXPECT_TRUE(app.axTrusted());
    // A desktop that shows no windows still asks for previews, whatever it lets be read.
    for (const std::string name : {"unwatched", "blind"}) {
        ScriptedSession session;
        session.hasGrab = session.watch.sees = session.watch.trusted = false;
        session.hasWatch = name == "blind";
        AppModel other({loop_, audio_, defaults_, session, folder_ / (name + ".sqlite"), folder_ / name});
        other.start(0);
        EXPECT_TRUE(session.previewer.offered);
        EXPECT_TRUE(session.previewer.heard.show(a_, false));
        EXPECT_FALSE(session.previewer.heard.show(folder_ / "picture.png", false));
        other.settings().change([](AppSettings& s) { s.spacePlaysInFinder = false; });
        EXPECT_FALSE(session.previewer.offered);
        other.settings().change([](AppSettings& s) { s.spacePlaysInFinder = true; });
    }
}

TEST(KeyGrab, GivesPressRepeatsAndReleaseToOneSideAndLosesNoOtherKey) {
    using enum KeyEvent;
    const struct {
        std::vector<std::pair<KeyEvent, bool>> keys;  // with what the word says by then
        std::string answers;                          // s: swallowed, r: as a repeat, p: passed
    } cases[] = {{{{spacePress, true}, {spacePress, true}, {spaceRelease, true}}, "srs"},
                 {{{spacePress, true}, {spacePress, false}, {spaceRelease, false}}, "srs"},
                 {{{spacePress, false}, {spacePress, false}, {spaceRelease, true}}, "ppp"},
                 {{{spacePress, true}, {otherPress, true}, {spaceRelease, true}, {spacePress, true}}, "spps"},
                 {{{spacePress, true}, {rest, true}, {spaceRelease, true}, {rest, true}}, "sssp"}};
    for (const auto& c : cases) {
        bool held = false;
        std::string answers;
        for (const auto& [event, swallows] : c.keys) {
            const KeyAnswer answer = decideKey(event, held, swallows);
            answers += !answer.swallowed ? 'p' : answer.isRepeat ? 'r' : 's';
        }
        EXPECT_EQ(answers, c.answers);
    }
}

}  // namespace
}  // namespace brindlehum
