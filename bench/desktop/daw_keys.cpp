// How soon a key is in a DAW in front or behind another window, how soon the focus is back, and what a burst costs the
// control port: tests/desktop/desktop-session.sh bench_daw_keys
#include <QTcpSocket>
#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "app/daw_control.h"
#include "desktop/desktop_fixture.h"
#include "desktop/key_window.h"

using namespace brindlehum;
using namespace brindlehum::test;

namespace {

using Clock = KeyWindow::Clock;
constexpr int rounds = 200;

double milliseconds(Clock::duration time) {
    return std::chrono::duration<double, std::milli>(time).count();
}

void print(const char* what, std::vector<double> times) {
    if (times.empty()) { return; }
    std::ranges::sort(times);
    const auto at = [&](double share) { return times[size_t(share * double(times.size() - 1))]; };
    std::printf("%s: %zu times, median %.1f ms, p95 %.1f ms, most %.1f ms\n", what, times.size(), at(0.5), at(0.95),
                at(1));
    std::fflush(stdout);
}

void pause(double seconds) {
    until([] { return false; }, seconds);
}

void measureKeys(AppModel& app, KeyWindow& daw, KeyWindow* front, const char* what) {
    std::vector<double> keys, backs;
    KeyWindow& active = front ? *front : daw;
    active.activate();
    until([&] { return active.hasFocus(); });
    pause(0.3);
    for (int i = 0; i < rounds; ++i) {
        daw.take();
        const auto start = Clock::now();
        app.handle("daw", {{"cmd", "play"}});
        if (!until([&] { return daw.count() >= 2; }, 2)) { continue; }
        keys.push_back(milliseconds(daw.take().front().at - start));
        if (front && until([&] { return front->focusedAt() > start; }, 2)) {
            backs.push_back(milliseconds(front->focusedAt() - start));
        }
        pause(0.2);  // longer than what counts as a burst
    }
    print(what, keys);
    if (front) { print("  focus back in the other window", backs); }
}

// The control port, as another program uses it.
double ask(AppModel& app, const char* target) {
    const auto start = Clock::now();
    QTcpSocket socket;
    socket.connectToHost("127.0.0.1", app.control().listeningPort());
    socket.write(QByteArray("GET /") + target + " HTTP/1.1\r\nX-Brindlehum: 1\r\n\r\n");
    QEventLoop turn;
    QObject::connect(&socket, &QTcpSocket::disconnected, &turn, &QEventLoop::quit);
    QTimer::singleShot(5000, &turn, &QEventLoop::quit);
    turn.exec();
    return milliseconds(Clock::now() - start);
}

void measureBurst(AppModel& app, KeyWindow& daw) {
    std::vector<double> commands, statuses;
    for (int i = 0; i < 50; ++i) {
        commands.push_back(ask(app, "daw?cmd=play"));
        statuses.push_back(ask(app, "status"));
    }
    print("daw through the control port, 50 in a burst", commands);
    print("status between them", statuses);
    until([&] { return daw.count() >= 100; });
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const TempFolder files;
    QtMainLoop loop;
    MemoryDefaults defaults;
    HeadlessAudioSystem audio;
    LinuxSession session(loop);
    AppModel app({loop, audio, defaults, session, files / "Catalog.sqlite", files / "editor"});
    app.start(0);
    KeyWindow daw("REAPER"), other("Terminal");
    if (!until([&] { return session.applications()->windows().size() == 2; })) { return 1; }
    measureKeys(app, daw, nullptr, "DAW in front: request to key");
    measureKeys(app, daw, &other, "DAW behind another window: request to key");
    other.activate();
    until([&] { return other.hasFocus(); });
    measureBurst(app, daw);
}
