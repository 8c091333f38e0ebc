// The player on a real session bus, driven by another program.
#include "platform/linux_media_session.h"

#include <gmock/gmock.h>

#include <QProcess>

#include "support/desktop_bus.h"
#include "support/event_loop_test.h"

namespace brindlehum {
namespace {

// Counts the signals of the player.
class Listener : public QObject {
    Q_OBJECT
public:
    explicit Listener(const QString& address) : bus_(QDBusConnection::connectToBus(address, "listener")) {
        bus_.connect({}, "/org/mpris/MediaPlayer2", "org.freedesktop.DBus.Properties", "PropertiesChanged", this,
                     SLOT(changed(QString, QVariantMap, QStringList)));
        bus_.connect({}, "/org/mpris/MediaPlayer2", "org.mpris.MediaPlayer2.Player", "Seeked", this,
                     SLOT(seeked(qlonglong)));
    }
    ~Listener() override { QDBusConnection::disconnectFromBus("listener"); }
    std::vector<QStringList> changes;  // the names of the properties
    std::vector<qlonglong> jumps;

public Q_SLOTS:
    void changed(const QString& /*interface*/, const QVariantMap& values, const QStringList& /*gone*/) {
        changes.push_back(values.keys());
    }
    void seeked(qlonglong position) { jumps.push_back(position); }

private:
    QDBusConnection bus_;
};

struct MediaSessionTest : test::EventLoopTest {
    test::DesktopBus bus;
    LinuxMediaSession session;
    std::string wished;  // the latest
    double at = 1.5;

    MediaSessionTest() {
        const auto note = [this](const char* wish) { return [this, wish] { wished = wish; }; };
        session.start({.play = note("play"),
                       .pause = note("pause"),
                       .playPause = note("playPause"),
                       .stop = note("stop"),
                       .raise = note("raise"),
                       .quit = note("quit"),
                       .seek = [this](double to) { wished = "seek " + std::to_string(to); },
                       .setLoop = [this](bool on) { wished = on ? "loop" : "no loop"; },
                       .setVolume = [this](double to) { wished = "volume " + std::to_string(to); },
                       .position = [this] { return at; }});
    }
    // What the client prints.
    QString client(const QStringList& words) {
        QProcess process;
        process.start("playerctl", QStringList{"-p", "brindlehum"} + words);
        bool ended = false;
        QObject::connect(&process, &QProcess::finished, [&] { ended = true; });
        EXPECT_TRUE(until([&] { return ended; })) << "the package playerctl";
        return QString::fromUtf8(process.readAllStandardOutput() + process.readAllStandardError()).trimmed();
    }
};

TEST_F(MediaSessionTest, AnotherProgramReadsAndDrivesThePlayer) {
    EXPECT_EQ(client({"status"}), "Stopped");
    session.show({MediaStatus::Playback::playing, "Rain & storm.wav", 12.25, true, 0.5});
    const std::vector<std::pair<QStringList, QString>> readings = {
        {{"status"}, "Playing"},
        {{"metadata", "xesam:title"}, "Rain & storm.wav"},
        {{"metadata", "mpris:length"}, "12250000"},
        {{"metadata", "xesam:url"}, "No player could handle this command"},
        {{"position"}, "1.500"},  // and a little, by which the client thinks that it played on
        {{"loop"}, "Track"},
        {{"volume"}, "0.500000"},
    };
    for (const auto& [words, answer] : readings) {
        EXPECT_THAT(client(words).toStdString(), testing::StartsWith(answer.toStdString()))
            << words.join(' ').toStdString();
    }
    const std::vector<std::pair<QStringList, std::string>> wishes = {
        {{"play"}, "play"},
        {{"pause"}, "pause"},
        {{"play-pause"}, "playPause"},
        {{"stop"}, "stop"},
        {{"position", "3.25"}, "seek 3.250000"},
        {{"position", "2+"}, "seek 3.500000"},
        {{"position", "60-"}, "seek 0.000000"},
        {{"loop", "None"}, "no loop"},
        {{"loop", "Track"}, "loop"},
        {{"volume", "0.25"}, "volume 0.250000"},
    };
    for (const auto& [words, wish] : wishes) {
        wished.clear();
        client(words);
        EXPECT_EQ(wished, wish) << words.join(' ').toStdString();
    }

    // Each change is told once, and rest is silent.
    Listener listener(bus.address());
    session.show({});
    MediaStatus status{MediaStatus::Playback::paused, "a.wav", 2, false, 1};
    session.show(status);
    session.show(status);
    status.playback = MediaStatus::Playback::playing;
    session.show(status);
    status.title = "b.wav";
    session.show(status);
    session.show(status);
    session.jumped();
    status.loops = true;
    session.show(status);
    ASSERT_TRUE(until([&] { return listener.changes.size() >= 5; }));
    listener.changes.erase(listener.changes.begin());
    EXPECT_THAT(
        listener.changes,
        testing::ElementsAre(QStringList{"CanPause", "CanPlay", "CanSeek", "Metadata", "PlaybackStatus"},
                             QStringList{"PlaybackStatus"}, QStringList{"Metadata"}, QStringList{"LoopStatus"}));
    EXPECT_THAT(listener.jumps, testing::ElementsAre(1'500'000));
}

}  // namespace
}  // namespace brindlehum

#include "media_session.moc"
