// QtMainLoop: the main loop of the application, on Qt's event loop.
#pragma once

#include "platform/main_loop.h"

namespace brindlehum {

// Made on the main thread, where Qt's event loop runs. Jobs and timers still pending at its destruction are dropped
// unrun; timers are exact to about a millisecond. `post` must not race with the destruction.
class QtMainLoop : public MainLoop {
public:
    QtMainLoop();
    ~QtMainLoop() override;
    QtMainLoop(const QtMainLoop&) = delete;
    QtMainLoop& operator=(const QtMainLoop&) = delete;

    void post(std::function<void()> job) override;
    [[nodiscard]] TimerHandle after(double seconds, std::function<void()> job) override;
    void later(double seconds, std::function<void()> job) override;
    [[nodiscard]] TimerHandle every(double seconds, std::function<void()> job) override;
    double now() const override;

private:
    class Home;
    std::unique_ptr<Home> home_;  // runs the posted jobs and owns the timers
};

}  // namespace brindlehum
