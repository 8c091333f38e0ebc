// The thread that answers a grabbed Space while the main thread arms it, disarms it and changes its mind.
#include "linux/x11/x11_key_grab.h"

#include <random>

#include "desktop/key_window.h"
#include "platform/qt_main_loop.h"
#include "support/event_loop_test.h"

namespace brindlehum::test {
namespace {

constexpr xcb_keycode_t space = 65;  // of the usual keyboards
constexpr int presses = 2000;

using KeyGrabs = EventLoopTest;

TEST_F(KeyGrabs, EachPressOfSpaceIsOursOrReachesTheWindowInFront) {
    const unsigned seed = std::random_device()();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    QtMainLoop loop;
    KeyWindow front("Front");
    QTimer tick;
    tick.start(1);
    ASSERT_TRUE(until([&] {
        front.activate();  // the window manager may not know it yet
        return front.hasFocus();
    }));
    int ours = 0;
    auto grab = std::make_unique<X11KeyGrab>(loop);
    ASSERT_TRUE(grab->start({[&](bool, bool swallowed) { ours += swallowed ? 1 : 0; }, [] {}}));
    QObject::connect(&tick, &QTimer::timeout, [&] {
        if (random() % 4 == 0) { grab->setArmed(random() % 2 == 0); }
        if (random() % 4 == 0) { grab->setSwallows(random() % 2 == 0); }
    });
    std::thread typist([&] {
        for (int i = 0; i < presses; ++i) {
            front.program(space, true);
            front.program(space, false);
        }
    });
    int pressed = 0, released = 0;
    EXPECT_TRUE(until([&] {
        for (const KeyWindow::Key& key : front.take()) { ++(key.isPress ? pressed : released); }
        return ours + pressed == presses && released == pressed;
    })) << ours
        << " swallowed, " << pressed << " arrived, " << released << " released";
    typist.join();
    EXPECT_GT(ours, 0);
    EXPECT_GT(pressed, 0);
    EXPECT_FALSE(grab->isRefused());
    tick.stop();
    grab.reset();
}

}  // namespace
}  // namespace brindlehum::test
