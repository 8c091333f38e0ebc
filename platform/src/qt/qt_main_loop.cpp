// Posted jobs and timers on Qt's event loop.
#include "platform/qt_main_loop.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <QPointer>
#include <QSocketNotifier>
#include <QTimer>
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <deque>
#include <mutex>
#include <system_error>

namespace brindlehum {

namespace {

class QtTimer : public Timer {
public:
    explicit QtTimer(QTimer* timer) : timer_(timer) {}
    // The job itself may destroy its handle, so the QTimer must outlive this call.
    ~QtTimer() override {
        if (!timer_) { return; }
        timer_->stop();
        timer_->disconnect();
        timer_->deleteLater();
    }

private:
    QPointer<QTimer> timer_;  // null once the loop has gone
};

QTimer* startTimer(QObject& home, double seconds, bool once, std::function<void()> job) {
    auto* timer = new QTimer(&home);
    timer->setTimerType(Qt::PreciseTimer);
    timer->setSingleShot(once);
    QObject::connect(timer, &QTimer::timeout, timer, std::move(job));
    timer->start(std::chrono::milliseconds(std::lround(std::max(seconds, 0.0) * 1000)));
    return timer;
}

}  // namespace

// Our own queue holds the jobs, and an event descriptor counts them: each round of Qt's loop takes one job, so that a
// nested loop continues with them. No Qt event crosses threads, since a thread sanitizer can't see the locks that Qt
// uses for them.
class QtMainLoop::Home : public QObject {
public:
    Home() {
        connect(&notifier_, &QSocketNotifier::activated, this, [this] { runNext(); });
    }

    void add(std::function<void()> job) {
        {
            const std::lock_guard guard(lock_);
            jobs_.push_back(std::move(job));
        }
        eventfd_write(waiting_.descriptor, 1);
    }

private:
    void runNext() {
        eventfd_t one = 0;
        if (eventfd_read(waiting_.descriptor, &one) != 0) { return; }
        std::unique_lock guard(lock_);
        const auto job = std::move(jobs_.front());
        jobs_.pop_front();
        guard.unlock();
        job();
    }

    struct Counter {
        int descriptor = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK | EFD_SEMAPHORE);
        Counter() {
            if (descriptor < 0) {
                throw std::system_error(errno, std::generic_category(), "No event descriptor is left");
            }
        }
        ~Counter() { close(descriptor); }
        Counter(const Counter&) = delete;
        Counter& operator=(const Counter&) = delete;
    };

    Counter waiting_;
    QSocketNotifier notifier_{waiting_.descriptor, QSocketNotifier::Read};
    std::mutex lock_;
    std::deque<std::function<void()>> jobs_;
};

QtMainLoop::QtMainLoop() : home_(std::make_unique<Home>()) {}
QtMainLoop::~QtMainLoop() = default;

void QtMainLoop::post(std::function<void()> job) {
    home_->add(std::move(job));
}

TimerHandle QtMainLoop::after(double seconds, std::function<void()> job) {
    return std::make_unique<QtTimer>(startTimer(*home_, seconds, true, std::move(job)));
}

void QtMainLoop::later(double seconds, std::function<void()> job) {
    QTimer* timer = startTimer(*home_, seconds, true, std::move(job));
    QObject::connect(timer, &QTimer::timeout, timer, &QObject::deleteLater);
}

TimerHandle QtMainLoop::every(double seconds, std::function<void()> job) {
    return std::make_unique<QtTimer>(startTimer(*home_, seconds, false, std::move(job)));
}

double QtMainLoop::now() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

}  // namespace brindlehum
