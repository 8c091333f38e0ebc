// Bars that the user sets: analysed at once, stored for the file, and used by temp edits and the sheet.
#include "app/piece_bars.h"

#include "app_fixture.h"
#include "support/music.h"
#include "support/signals.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

class BarsOfAPiece : public test::AppTest {
protected:
    fs::path write(const std::string& name, const std::vector<float>& x) {
        test::writeAudio(folder_ / name, {x}, {.rate = int(test::musicRate)});
        return folder_ / name;
    }
    std::unique_ptr<PieceBars> open(const fs::path& file) {
        auto piece = app_.barsOf(file);
        wait(*piece);
        return piece;
    }
    void wait(const PieceBars& piece) {
        EXPECT_TRUE(loop_.runUntil([&piece] { return !piece.isAnalysing(); }, 60));
    }
    std::string sheetAfterEdits(const fs::path& file) {
        app_.makeTempEdits({file});
        EXPECT_TRUE(loop_.runUntil([this] { return !app_.tempEdits().progress(); }, 60));
        const std::string base = file.stem().string();
        return test::readBytes(file.parent_path() / (base + " Edits") / (base + " - Edit Notes.txt"));
    }
};

TEST_F(BarsOfAPiece, AreStoredForTheFileAndFollowedByItsEdits) {
    const auto file = write("Song.wav", test::clickPiece(20));
    auto piece = open(file);
    ASSERT_TRUE(piece->analysis());
    EXPECT_NEAR(piece->analysis()->grid.downbeats.front(), 0, 0.05);
    piece->set({std::nullopt, std::nullopt, 0.5});
    EXPECT_TRUE(piece->isAnalysing());
    wait(*piece);
    EXPECT_NEAR(std::remainder(piece->analysis()->grid.downbeats.front() - 0.5, 2.0), 0, 0.05);
    EXPECT_THAT(sheetAfterEdits(file), Not(HasSubstr("Set by hand"))) << "nothing is stored yet";
    piece->store();

    EXPECT_EQ(open(file)->given().downbeat, 0.5);
    EXPECT_EQ(BarsByHand(defaults_).find(file).downbeat, 0.5) << "after a new start";
    EXPECT_THAT(sheetAfterEdits(file), HasSubstr("Note: Set by hand: a bar starts at 0:00.500\n"));

    piece->set({});
    piece->store();
    EXPECT_FALSE(BarsByHand(defaults_).find(file).any());
}

TEST_F(BarsOfAPiece, SayWhyThereAreNoneAndTakeATempoAllTheSame) {
    const std::vector<float> noise = test::noise(size_t(4 * test::musicRate), 9);
    const auto problem = [this](const fs::path& file) { return open(file)->problem(); };
    EXPECT_THAT(problem(folder_ / "Absent.wav"), HasSubstr("No such file"));
    EXPECT_EQ(problem(write("Short.wav", {noise.begin(), noise.begin() + 9000})),
              "A second or less is too short for bars");
    auto piece = open(write("Rain.wav", noise));
    EXPECT_EQ(piece->problem(), AnalysisOutcome::noPulseText);
    ASSERT_TRUE(piece->signal()) << "there is something to look at";
    piece->set({90.0, 3, std::nullopt});
    wait(*piece);
    EXPECT_TRUE(piece->problem().empty());
    ASSERT_TRUE(piece->analysis());
    EXPECT_EQ(piece->analysis()->grid.beatsPerBar, 3);
}

TEST_F(BarsOfAPiece, UncertainOnesAreToldByTheBatchAndTheSheetUntilTheyAreSet) {
    // Every beat alike.
    const auto file =
        write("Metronome.wav", test::clickTrack(test::beatTimes(0, 20, [](double) { return 120.0; }), 1, 0, 20));
    EXPECT_THAT(sheetAfterEdits(file), HasSubstr("Note: Bar lines uncertain ("));
    EXPECT_THAT(app_.tempEdits().uncertain(), testing::ElementsAre(file));
    EXPECT_EQ(app_.tempEdits().closing(), "Temp edits written for 1 file; bar lines uncertain: set where a bar starts");
    auto piece = open(file);
    piece->set({std::nullopt, std::nullopt, 1.0});
    piece->store();
    EXPECT_THAT(sheetAfterEdits(file), Not(HasSubstr("uncertain")));
    EXPECT_EQ(app_.tempEdits().closing(), "Temp edits written for 1 file");
}

TEST(BarsByHandTest, DamagedEntriesAreLeftOutAndTheOthersFollowARename) {
    MemoryDefaults defaults;
    defaults.set(BarsByHand::key,
                 R"([{"path":"/a","bpm":96.5,"beatsPerBar":99},{"path":"/b","bpm":"fast"},7,{"path":3,"bpm":90}])");
    BarsByHand bars(defaults);
    EXPECT_EQ(bars.find("/a"), (GivenBars{96.5, std::nullopt, std::nullopt}));
    EXPECT_FALSE(bars.find("/b").any());
    bars.rename("/a", "/c");
    EXPECT_EQ(BarsByHand(defaults).find("/c").bpm, 96.5);
    for (size_t i = 0; i < BarsByHand::maxFiles; ++i) { bars.set("/" + std::to_string(i), {{}, 3, {}}); }
    EXPECT_FALSE(bars.find("/c").any()) << "the oldest goes first";
}

}  // namespace
}  // namespace brindlehum
