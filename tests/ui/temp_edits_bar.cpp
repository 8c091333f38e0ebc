// The bar of a batch of temp edits beside the player's message.
#include <QPushButton>
#include <QTest>

#include "analysis/synth.h"
#include "ui/player/player_view.h"
#include "ui/window/temp_edits_bar.h"
#include "window_fixture.h"

namespace brindlehum {
namespace {

using TempEditsBarTest = test::WindowTest;

QPushButton* button(QWidget& root, const QString& text) {
    for (auto* each : root.findChildren<QPushButton*>()) {
        if (each->text() == text) { return each; }
    }
    return nullptr;
}

TEST_F(TempEditsBarTest, TellsProgressThenTheWayToTheFoldersUntilSomethingElseIsSaid) {
    PlayerView view(player, WaveformView::Style::window);
    auto* bar = new TempEditsBar(model.tempEdits(), player);
    view.addToMessage(bar);
    view.show();
    auto* row = view.findChild<QWidget*>("messageRow");
    EXPECT_FALSE(row->isVisible());

    const auto clicks = test::clickTrack(test::beatTimes(0, 20, [](double) { return 120.0; }), 4, 0, 20);
    test::writeAudio(folder / "song.wav", {clicks}, {.rate = int(test::rate)});
    model.makeTempEdits({folder / "song.wav", file("short.wav", 1)});
    EXPECT_TRUE(row->isVisible());
    EXPECT_TRUE(button(*bar, "Cancel")->isVisible());
    EXPECT_FALSE(button(*bar, "Show in File Manager")->isVisible());

    ASSERT_TRUE(settle([&] { return !model.tempEdits().progress(); }));
    EXPECT_FALSE(button(*bar, "Cancel")->isVisible());
    EXPECT_TRUE(button(*bar, "Why Skipped…")->isVisible());
    QTest::mouseClick(button(*bar, "Show in File Manager"), Qt::LeftButton);
    EXPECT_EQ(desktop.shown, std::vector{folder / "song Edits"});

    ASSERT_TRUE(load(file("next.wav", 2)));
    EXPECT_FALSE(bar->isVisible());
    EXPECT_FALSE(row->isVisible());
}

}  // namespace
}  // namespace brindlehum
