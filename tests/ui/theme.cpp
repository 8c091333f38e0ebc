// The colours: legible on every ground, and light or dark as the desktop says.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QGuiApplication>

#include "desktop_bus.h"
#include "ui/look/theme.h"
#include "ui/look/theme_controller.h"

namespace brindlehum {
namespace {

TEST(Theme, TextIsLegibleOnEveryGround) {
    for (const Theme* theme : {&Theme::darkTheme(), &Theme::lightTheme()}) {
        SCOPED_TRACE(theme->dark ? "dark" : "light");
        for (const auto& ground : {theme->window, theme->panel, theme->control, theme->hover}) {
            SCOPED_TRACE(ground.name().toStdString());
            EXPECT_GE(contrast(theme->text, ground), 7);
            EXPECT_GE(contrast(theme->secondary, ground), 4.5);
            EXPECT_GE(contrast(theme->accent, ground), 3) << "focus rings and icons of pressed toggles";
        }
        EXPECT_GE(contrast(theme->warning, theme->window), 4.5);
        EXPECT_GE(contrast(theme->onAccent, theme->accent), 4.5);
        EXPECT_GE(contrast(theme->text, theme->accentGround), 4.5);
        EXPECT_GE(contrast(theme->accent, theme->accentGround), 3);
        for (const auto& wave : {theme->waveform, theme->hudWaveform}) {
            EXPECT_GE(contrast(wave.wave, wave.background), 3);
            EXPECT_GE(contrast(wave.playhead, wave.background), 3);
            EXPECT_GE(contrast(wave.label, wave.background), 4.5);
            for (const auto& band : {wave.front, wave.lfe, wave.surround, wave.height}) {
                EXPECT_GE(contrast(band, wave.background), 3) << band.name().toStdString();
            }
        }
    }
    EXPECT_NEAR(contrast(Qt::black, Qt::white), 21, 1e-6);
}

TEST(Theme, EveryTokenOfTheStyleSheetHasAColour) {
    for (const Theme* theme : {&Theme::darkTheme(), &Theme::lightTheme()}) {
        EXPECT_FALSE(theme->styleSheet().isEmpty());
        EXPECT_FALSE(theme->styleSheet().contains('@'));
    }
}

TEST(Theme, FollowsTheDesktopPortal) {
    const auto becomes = [](bool dark) {
        for (QDeadlineTimer patience(20000); !patience.hasExpired();) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
            if (Theme::current().dark == dark) { return true; }
        }
        return false;
    };
    const bool before = Theme::current().dark;
    test::FakePortal portal(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), before ? 2 : 1);
    ASSERT_TRUE(portal.isReady());
    {
        ThemeController theme;
        EXPECT_TRUE(becomes(!before)) << "the preference at the start";
        portal.prefer(before ? 1 : 2);
        EXPECT_TRUE(becomes(before)) << "a change while running";
        portal.prefer(before ? 2 : 1);
        EXPECT_TRUE(becomes(!before));
        EXPECT_EQ(QGuiApplication::palette().color(QPalette::Window), Theme::current().window);
    }
    ThemeController().apply(before);
}

}  // namespace
}  // namespace brindlehum
