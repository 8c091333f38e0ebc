// A test with a Qt event loop of its own, which runs until something has happened.
#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTimer>
#include <functional>

namespace brindlehum::test {

class EventLoopTest : public testing::Test {
public:
    // False when `done` still doesn't hold after 20 seconds.
    static bool until(const std::function<bool()>& done) {
        bool late = false;
        QTimer guard;
        guard.setSingleShot(true);
        QObject::connect(&guard, &QTimer::timeout, [&late] { late = true; });
        guard.start(20000);
        while (!done() && !late) { QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents); }
        return !late;
    }

private:
    int argc_ = 1;
    char name_[5] = "test";
    char* argv_[2] = {name_, nullptr};
    QCoreApplication application_{argc_, argv_};
};

}  // namespace brindlehum::test
