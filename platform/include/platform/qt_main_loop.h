// QtMainLoop: the application's main loop, on Qt's event loop.
#pragma once

#include "platform/main_loop.h"

namespace brindlehum {

// Create it on the main thread, which runs Qt's event loop. The destructor drops pending jobs and timers without
// running them. Timers are exact to about a millisecond. `post` must not race with the destruction.
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
