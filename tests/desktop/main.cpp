// Runs the tests of real file managers and of keys for DAWs on the desktop that desktop-session.sh has made.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <cstdio>

#include "platform/key_grab.h"
#include "platform/linux_session.h"
#include "platform/qt_main_loop.h"

namespace {

// A process that takes every Space, and says so, until it is killed.
int hold() {
    brindlehum::QtMainLoop loop;
    brindlehum::LinuxSession session(loop);
    const auto say = [](const char* word) {
        std::puts(word);
        std::fflush(stdout);
    };
    session.keyGrab()->start({[say](bool, bool) { say("space"); }, [] {}});
    session.keyGrab()->setSwallows(true);
    session.keyGrab()->setArmed(true);
    say("armed");
    return QCoreApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    QCoreApplication app(argc, argv);
    if (QCoreApplication::arguments().contains("--hold")) { return hold(); }
    return RUN_ALL_TESTS();
}
