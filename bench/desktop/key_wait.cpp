// What the grab of Space costs the keyboard while our main thread is blocked: presses that are passed on, from XTEST to
// the window in front, with the grab and without: tests/desktop/desktop-session.sh bench_key_wait
#include <cstdio>
#include <thread>

#include "desktop/desktop_fixture.h"
#include "desktop/key_window.h"

using namespace brindlehum;
using namespace brindlehum::test;

namespace {

using Clock = KeyWindow::Clock;

// Less than the second after which the grab gives up on a blocked main thread.
constexpr int presses = 100;
constexpr int batches = 10;

void measure(KeyWindow& front, xcb_connection_t* x, xcb_keycode_t key, const char* what) {
    std::vector<double> times;
    for (int batch = 0; batch < batches; ++batch) {
        for (int i = 0; i < presses; ++i) {
            front.take();
            const auto start = Clock::now();
            for (const uint8_t type : {XCB_KEY_PRESS, XCB_KEY_RELEASE}) {
                xcb_test_fake_input(x, type, key, XCB_CURRENT_TIME, XCB_NONE, 0, 0, 0);
            }
            xcb_flush(x);
            // The main thread does nothing else meanwhile: it is blocked.
            while (front.count() < 2 && Clock::now() - start < std::chrono::seconds(1)) {
                std::this_thread::sleep_for(std::chrono::microseconds(200));
            }
            const auto keys = front.take();
            if (keys.empty()) { continue; }
            times.push_back(std::chrono::duration<double, std::milli>(keys.front().at - start).count());
        }
        until([] { return false; }, 0.1);  // the main loop catches up
    }
    std::ranges::sort(times);
    const auto at = [&](double share) { return times.empty() ? 0 : times[size_t(share * double(times.size() - 1))]; };
    std::printf("%s: %zu of %d presses, median %.2f ms, p99 %.2f ms, most %.2f ms\n", what, times.size(),
                presses * batches, at(0.5), at(0.99), at(1));
}

}  // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    QtMainLoop loop;
    LinuxSession session(loop);
    KeyWindow front("Front");
    front.activate();
    if (!until([&] { return front.hasFocus(); })) { return 1; }
    xcb_connection_t* const x = xcb_connect(nullptr, nullptr);
    constexpr xcb_keycode_t space = 65;  // of the usual keyboards
    measure(front, x, space, "Space, nothing grabbed");
    KeyGrab* const grab = session.keyGrab();
    if (!grab || !grab->start({[](bool, bool) {}, [] {}})) { return 1; }
    grab->setArmed(true);
    until([] { return false; }, 0.3);
    measure(front, x, space, "Space, grabbed and passed on");
    xcb_disconnect(x);
}
