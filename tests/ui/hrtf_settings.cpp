// The choice of an HRTF set: a good file is taken, a bad one is named and changes nothing.
#include "ui/settings/hrtf_settings.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>

#include "mix/render/hrtf_set.h"
#include "window_fixture.h"

namespace brindlehum {
namespace {

using HRTFChoice = test::WindowTest;

TEST_F(HRTFChoice, GoodFileIsTakenAndABadOneChangesNothing) {
    DiskWork looks(loop, "test.looks");
    HRTFSettings choice(model.settings(), looks);
    const auto says = [&](const QString& text) {
        return settle([&] {
            const auto labels = choice.findChildren<QLabel*>();
            return std::ranges::any_of(labels, [&](const QLabel* label) { return label->text().startsWith(text); });
        });
    };
    const auto used = [&] { return model.settings().value().hrtfFile; };
    const auto good = folder / "ears.sofa";
    const auto bad = folder / "bad.sofa";
    std::filesystem::copy_file(HRTFSet::defaultFile(), good);
    test::writeBytes(bad, "not a set");
    choice.take(bad);
    EXPECT_TRUE(says("Can't read the HRTF set bad.sofa. The set in use stays."));
    EXPECT_EQ(used(), "");
    choice.take(good);
    EXPECT_TRUE(settle([&] { return used() == good.string(); }));
    EXPECT_TRUE(says("For binaural outputs"));
    choice.take(bad);
    EXPECT_TRUE(says("Can't read the HRTF set bad.sofa"));
    EXPECT_EQ(used(), good.string());
    test::writeBytes(good, "overwritten");
    choice.show();
    EXPECT_TRUE(says("Can't read the HRTF set ears.sofa. The built-in set is in use."));
    named<QPushButton>(choice, "Use the built-in HRTF set for headphones")->click();
    EXPECT_EQ(used(), "");
}

}  // namespace
}  // namespace brindlehum
