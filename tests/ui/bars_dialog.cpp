// The dialog that sets the bars of a piece, from a click to what is stored.
#include "ui/window/bars_dialog.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

#include "support/music.h"
#include "support/signals.h"
#include "ui/window/bars_form.h"
#include "ui/window/bars_strip.h"
#include "window_fixture.h"

namespace brindlehum {
namespace {

struct BarsDialogTest : test::WindowTest {
    std::unique_ptr<BarsDialog> open(const std::filesystem::path& file) {
        auto dialog = std::make_unique<BarsDialog>(model.barsOf(file), player.sound(), player.transport());
        dialog->setAttribute(Qt::WA_DeleteOnClose, false);
        dialog->show();
        EXPECT_TRUE(settle([&] { return !hasLabel(*dialog, "Analysing…"); }));
        return dialog;
    }
    static bool hasLabel(const QWidget& root, const QString& start) {
        return std::ranges::any_of(root.findChildren<QLabel*>(),
                                   [&](const QLabel* label) { return label->accessibleName().startsWith(start); });
    }
    static void type(QWidget& dialog, const char* field, const QString& text) {
        auto* line = named<QLineEdit>(dialog, field);
        line->selectAll();
        QTest::keyClicks(line, text);
        QTest::keyClick(line, Qt::Key_Return);
    }
    GivenBars stored(const std::filesystem::path& file) { return BarsByHand(defaults).find(file); }
};

TEST_F(BarsDialogTest, AClickNearABeatSetsItAndSaveKeepsIt) {
    test::writeAudio(folder / "song.wav", {test::clickPiece(20)}, {.rate = int(test::musicRate)});
    auto dialog = open(folder / "song.wav");
    auto* strip = dialog->findChild<BarsStrip*>();
    const QSignalSpy chosen(strip, &BarsStrip::chosen);
    const int x = int(strip->width() * 1.5 / 20) + 3;
    QTest::mouseClick(strip, Qt::LeftButton, {}, {x, strip->height() / 2});
    ASSERT_EQ(chosen.size(), 1);
    EXPECT_NEAR(chosen[0][0].toDouble(), 1.5, 0.03);
    ASSERT_TRUE(settle([&] { return hasLabel(*dialog, "120"); }));
    QTest::keyClick(strip, Qt::Key_Right);
    ASSERT_TRUE(settle([&] { return hasLabel(*dialog, "120"); }));
    EXPECT_FALSE(stored(folder / "song.wav").any());
    QTest::mouseClick(named<QPushButton>(*dialog, "Save"), Qt::LeftButton);
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_NEAR(stored(folder / "song.wav").downbeat.value_or(0), 2.0, 0.03);
}

TEST_F(BarsDialogTest, WithoutAPulseOnlyATempoMakesEditsPossible) {
    test::writeAudio(folder / "rain.wav", {test::noise(size_t(4 * test::musicRate), 9)},
                     {.rate = int(test::musicRate)});
    auto dialog = open(folder / "rain.wav");
    auto* edits = named<QPushButton>(*dialog, "Save and Make Temp Edits");
    EXPECT_TRUE(hasLabel(*dialog, "No steady pulse found"));
    EXPECT_FALSE(edits->isEnabled());
    type(*dialog, "Tempo", "4000");
    EXPECT_TRUE(hasLabel(*dialog, "The tempo is a number from 20 to 400"));
    EXPECT_FALSE(named<QPushButton>(*dialog, "Save")->isEnabled());
    type(*dialog, "Tempo", "97,5");
    ASSERT_TRUE(settle([&] { return edits->isEnabled(); }));
    EXPECT_TRUE(dialog->isVisible()) << "Return only takes the value";
    const QSignalSpy asked(dialog.get(), &BarsDialog::editsAsked);
    QTest::mouseClick(edits, Qt::LeftButton);
    EXPECT_EQ(asked.size(), 1);
    EXPECT_EQ(stored(folder / "rain.wav").bpm, 97.5);
}

TEST_F(BarsDialogTest, ReadsTimesAsTheyAreSaid) {
    const std::pair<const char*, std::optional<double>> table[] = {
        {"12.5", 12.5}, {"1:02,25", 62.25}, {"1:00:00", 3600.0}, {"", {}},
        {"1:", {}},     {"-3", {}},         {"1:2:3:4", {}},     {"x", {}}};
    for (const auto& [text, seconds] : table) { EXPECT_EQ(BarsForm::secondsOf(text), seconds) << text; }
}

}  // namespace
}  // namespace brindlehum
