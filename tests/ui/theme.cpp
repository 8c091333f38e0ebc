// The colours: legible on every ground, and light or dark as the desktop says.
#include <gtest/gtest.h>

#include <QComboBox>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QImage>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QProcess>
#include <QSpinBox>
#include <functional>

#include "support/desktop_bus.h"
#include "ui/look/theme.h"
#include "ui/look/theme_controller.h"

namespace brindlehum {
namespace {

// A translucent colour on an opaque ground.
QColor over(const QColor& color, const QColor& ground) {
    QImage pixel(1, 1, QImage::Format_RGB32);
    pixel.fill(ground);
    QPainter(&pixel).fillRect(0, 0, 1, 1, color);
    return pixel.pixelColor(0, 0);
}

TEST(Theme, FieldsAreFoundByTheirEdges) {
    for (const Theme* theme : {&Theme::darkTheme(), &Theme::lightTheme()}) {
        QLineEdit line;
        QComboBox box;
        QSpinBox number;
        QPlainTextEdit text;
        for (QWidget* field : std::initializer_list<QWidget*>{&line, &box, &number, &text}) {
            field->setStyleSheet(theme->styleSheet());
            field->resize(120, 32);
            const QColor edge = field->grab().toImage().pixelColor(60, 0);
            EXPECT_GE(contrast(edge, theme->window), 3) << field->metaObject()->className();
            EXPECT_GE(contrast(edge, theme->panel), 3) << field->metaObject()->className();
        }
    }
}

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
        EXPECT_GE(contrast(theme->over, theme->window), 3);
        for (const auto& ground : {theme->window, theme->panel, theme->control}) {
            EXPECT_GE(contrast(theme->outline, ground), 3) << "edges of fields on " << ground.name().toStdString();
        }
        EXPECT_GE(contrast(theme->onAccent, theme->accent), 4.5);
        EXPECT_GE(contrast(theme->text, theme->accentGround), 4.5);
        EXPECT_GE(contrast(theme->accent, theme->accentGround), 3);
        for (const auto& wave : {theme->waveform, theme->hudWaveform}) {
            EXPECT_GE(contrast(wave.wave, wave.background), 3);
            EXPECT_GE(contrast(wave.playhead, wave.background), 3);
            EXPECT_GE(contrast(wave.playhead, over(wave.selection, wave.background)), 3);
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

bool becomes(
    bool dark, const std::function<void()>& meanwhile = [] {}) {
    for (QDeadlineTimer patience(20000); !patience.hasExpired();) {
        meanwhile();
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        if (Theme::current().dark == dark) { return true; }
    }
    return false;
}

// The controller of main() is the one that began without a portal. The signal comes from another process, because to
// send it here would make its types known to this one.
TEST(Theme, HearsAPortalThatStartsLate) {
    const bool before = Theme::current().dark;
    const QStringList signal = {"--session",
                                "--type=signal",
                                test::FakePortal::path,
                                QString(test::FakePortal::interface) + ".SettingChanged",
                                "string:org.freedesktop.appearance",
                                "string:color-scheme",
                                before ? "variant:uint32:2" : "variant:uint32:1"};
    EXPECT_TRUE(becomes(!before, [&] { ASSERT_EQ(QProcess::execute("dbus-send", signal), 0); }));
    ThemeController().apply(before);
}

TEST(Theme, FollowsTheDesktopPortal) {
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
