// The bar of a batch of temp edits beside the player's message.
#include <QPushButton>
#include <QTest>

#include "support/music.h"
#include "ui/player/player_view.h"
#include "ui/window/temp_edits_bar.h"
#include "window_fixture.h"

namespace brindlehum {
namespace {

using TempEditsBarTest = test::WindowTest;

TEST_F(TempEditsBarTest, ShowsProgressThenTheFoldersUntilTheNextMessage) {
    PlayerView view(player, model.settings(), WaveformView::Style::window);
    auto* bar = new TempEditsBar(model.tempEdits(), player.message());
    view.addToMessage(bar);
    view.show();
    auto* row = view.findChild<QWidget*>("messageRow");
    EXPECT_FALSE(row->isVisible());

    const auto clicks = test::clickTrack(test::beatTimes(0, 20, [](double) { return 120.0; }), 4, 0, 20);
    test::writeAudio(folder / "song.wav", {clicks}, {.rate = int(test::musicRate)});
    model.makeTempEdits({folder / "song.wav", file("short.wav", 1)});
    EXPECT_TRUE(row->isVisible());
    EXPECT_TRUE(named<QPushButton>(*bar, "Cancel")->isVisible());
    EXPECT_FALSE(named<QPushButton>(*bar, "Show in File Manager")->isVisible());

    ASSERT_TRUE(settle([&] { return !model.tempEdits().progress(); }));
    EXPECT_FALSE(named<QPushButton>(*bar, "Cancel")->isVisible());
    EXPECT_TRUE(named<QPushButton>(*bar, "Why Skipped…")->isVisible());
    QTest::mouseClick(named<QPushButton>(*bar, "Show in File Manager"), Qt::LeftButton);
    EXPECT_EQ(session.files.shown, std::vector{folder / "song Edits"});

    ASSERT_TRUE(load(file("next.wav", 2)));
    EXPECT_FALSE(bar->isVisible());
    EXPECT_FALSE(row->isVisible());
}

}  // namespace
}  // namespace brindlehum
