// The page "What works here" shows what it knows, whatever hangs.
#include "ui/settings/works_page.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <future>

#include "window_fixture.h"

namespace brindlehum {
namespace {

using WorksPages = test::WindowTest;

bool shows(const QWidget& page, const QString& text) {
    const auto labels = page.findChildren<QLabel*>();
    return std::ranges::any_of(labels, [&](const QLabel* label) { return label->text().contains(text); });
}

TEST_F(WorksPages, LookThatHangsHoldsUpItsOwnRowAloneAndTheLastAnswerStays) {
    std::promise<void> disk;
    int tools = 0;
    const auto hanging = [&]() -> WorksPage::Look {
        return [answer = disk.get_future().share()]() -> WorksPage::Found {
            answer.wait();
            return [](DesktopFacts& facts) { facts.hrtfSet = "/net/own.sofa"; };
        };
    };
    const auto quick = [&]() -> WorksPage::Look {
        return [tool = std::filesystem::path("/opt/tool" + std::to_string(++tools))]() -> WorksPage::Found {
            return [tool](DesktopFacts& facts) { facts.downloadTool = tool; };
        };
    };
    bool hasTray = false;
    WorksPage page(
        [&] {
            DesktopFacts facts;
            facts.hasTray = hasTray;
            return facts;
        },
        {hanging, quick}, loop);
    page.show();
    EXPECT_TRUE(shows(page, "no status tray")) << "at once";
    EXPECT_TRUE(settle([&] { return shows(page, "/opt/tool1"); }));
    EXPECT_TRUE(shows(page, "Looking for an HRTF set"));
    hasTray = true;
    page.refresh();
    EXPECT_FALSE(shows(page, "no status tray"));
    EXPECT_TRUE(shows(page, "/opt/tool1")) << "until the next answer";
    EXPECT_TRUE(settle([&] { return shows(page, "/opt/tool2"); }));
    disk.set_value();
    EXPECT_TRUE(settle([&] { return shows(page, "/net/own.sofa"); }));
}

}  // namespace
}  // namespace brindlehum
