// What we ask over the accessibility bus, as a monitor of that bus sees it.
#include <QDBusConnection>
#include <QDBusMessage>
#include <QRegularExpression>

#include "desktop_fixture.h"

namespace brindlehum::test {
namespace {

struct Call {
    QString destination;
    QString path;
    QString member;
};

class BusMonitor {
public:
    BusMonitor() {
        const auto ask = QDBusMessage::createMethodCall("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress");
        const QString address = QDBusConnection::sessionBus().call(ask).arguments().value(0).toString();
        process_.start("dbus-monitor", {"--address", address, "type='method_call'"});
        until([&] { return process_.bytesAvailable() > 0; });
    }
    ~BusMonitor() {
        process_.kill();
        process_.waitForFinished();
    }
    // Our calls since the last time.
    std::vector<Call> calls() {
        static const QRegularExpression line(
            "^method call .* sender=(\\S+) -> destination=(\\S+) .*path=([^;]+);.*member=(\\S+)");
        const QString us = QDBusConnection("brindlehum-accessibility").baseService();
        std::vector<Call> calls;
        until([] { return false; }, 0.3);
        for (const QByteArray& text : process_.readAll().split('\n')) {
            const auto match = line.match(QString::fromUtf8(text));
            if (match.hasMatch() && match.captured(1) == us) {
                calls.push_back({match.captured(2), match.captured(3), match.captured(4)});
            }
        }
        return calls;
    }

private:
    QProcess process_;
};

class Privacy : public testing::TestWithParam<const char*> {};

TEST_P(Privacy, OnlyTheFileManagerIsAskedAndNoTextButALocation) {
    const TempFolder folder;
    for (const char* name : {"a.wav", "b.wav", "c.txt"}) { writeBytes(folder / name, "x"); }
    Desk desk(GetParam());
    QProcess elsewhere;  // a program with a tree of its own, under another name
    if (desk.isNautilus()) {
        elsewhere.start("thunar", {"--class=Elsewhere", "/usr"});
        ASSERT_TRUE(until(
            [] {
                return run({"xdotool", "search", "--onlyvisible", "--class", "Elsewhere"}) != "";
            },
            20));
    }
    BusMonitor monitor;
    desk.open(folder.path());
    ASSERT_TRUE(desk.choose(folder / "b.wav"));
    keys("ctrl+f");
    run({"xdotool", "type", "secret words"});
    keys("Escape");
    keys("Escape");
    QString program;
    std::set<std::string> texts;
    const auto calls = monitor.calls();
    EXPECT_GT(calls.size(), 20U);
    for (const Call& call : calls) {
        if (call.destination == "org.freedesktop.DBus" || call.destination == "org.a11y.atspi.Registry") { continue; }
        if (program.isEmpty()) { program = call.destination; }
        EXPECT_EQ(call.destination, program) << call.member.toStdString();
        if (call.member.contains("Text") || call.member.contains("String")) { texts.insert(call.path.toStdString()); }
    }
    EXPECT_EQ(texts.size(), desk.isNautilus() ? 0U : 1U) << testing::PrintToString(texts);
    if (!desk.isNautilus()) {
        ASSERT_TRUE(desk.showIcons());
        until([] { return false; }, 1);
        monitor.calls();
        until([] { return false; }, 3);
        EXPECT_LT(monitor.calls().size(), 100U) << "a reading was the reason for the next";
        return;
    }
    run({"xdotool", "search", "--onlyvisible", "--class", "Elsewhere", "windowactivate", "--sync"});
    ASSERT_TRUE(until([&] { return !desk.finder.finderActive(); }));
    monitor.calls();
    keys("Down");
    until([] { return false; }, 3);
    EXPECT_EQ(monitor.calls().size(), 0U) << "asked something while another program was in front";
    elsewhere.kill();
    elsewhere.waitForFinished();
}

INSTANTIATE_TEST_SUITE_P(Real, Privacy, testing::Values("nautilus", "thunar"));

}  // namespace
}  // namespace brindlehum::test
