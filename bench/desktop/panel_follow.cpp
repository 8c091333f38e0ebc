// How soon the panel is under a file manager's window that was moved, and whether it is at the right place:
// tests/desktop/desktop-session.sh bench_panel_follow nautilus|thunar
#include <QApplication>
#include <algorithm>
#include <cstdio>

#include "desktop/desktop_fixture.h"
#include "desktop/key_window.h"
#include "ui/panel/hud_controller.h"
#include "ui/panel/hud_panel.h"

using namespace brindlehum;
using namespace brindlehum::test;

namespace {

using Clock = KeyWindow::Clock;
constexpr int moves = 200;

struct Place {
    int x, y;
    bool operator==(const Place&) const = default;
};

// Where the X server has the window, which is not what its owner asked for last.
Place placeOf(xcb_connection_t* x, xcb_window_t window) {
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(x)).data->root;
    const auto at =
        owned(xcb_translate_coordinates_reply(x, xcb_translate_coordinates(x, window, root, 0, 0), nullptr));
    return at ? Place{at->dst_x, at->dst_y} : Place{};
}

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    TempFolder folder;
    writeAudio(folder / "sound.wav", noisePlanes(2, 48'000));
    Desk desk(argc > 1 ? argv[1] : "nautilus");
    HUDController hud(desk.app.player(), desk.app.settings());
    QObject::connect(&desk.app, &AppModel::fileManagerWindow, &hud, &HUDController::setFileManagerWindow);
    QObject::connect(&desk.app, &AppModel::fileManagerState, &hud, &HUDController::setFileManager);
    desk.open(folder.path());
    if (!until([&] { return hud.panel().isVisible(); })) { return 1; }
    const auto panel = xcb_window_t(hud.panel().winId());
    const auto files = xcb_window_t(desk.frontId());
    xcb_connection_t* const x = xcb_connect(nullptr, nullptr);
    run({"xdotool", "windowsize", QString::number(files), "700", "450"});
    run({"xdotool", "windowmove", QString::number(files), "160", "160"});
    until([] { return false; }, 2);
    std::vector<double> times;
    for (int move = 0; move < moves; ++move) {
        const Place before = placeOf(x, files), panelBefore = placeOf(x, panel);
        const int to = move % 2 == 0 ? 100 : 160;  // the panel is on the screen at either place
        const auto start = Clock::now();
        run({"xdotool", "windowmove", QString::number(files), QString::number(to), QString::number(to)});
        Place moved = before;
        const bool came = until(
            [&] {
                moved = placeOf(x, files);
                const Place now = placeOf(x, panel);
                return moved != before &&
                       now == Place{panelBefore.x + moved.x - before.x, panelBefore.y + moved.y - before.y};
            },
            1);
        if (came) { times.push_back(std::chrono::duration<double, std::milli>(Clock::now() - start).count()); }
        until([] { return false; }, 0.1 + 0.013 * (move % 8));  // at any phase of the regular look
    }
    xcb_disconnect(x);
    if (times.empty()) { return 1; }
    std::ranges::sort(times);
    std::printf("window moved to panel moved: %zu of %d, median %.1f ms, p95 %.1f ms, most %.1f ms\n", times.size(),
                moves, times[times.size() / 2], times[times.size() * 95 / 100], times.back());
}
