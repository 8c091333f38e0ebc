// Posted jobs and timers on Qt's event loop.
#include "platform/qt_main_loop.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <deque>
#include <mutex>

namespace brindlehum {

namespace {

class QtTimer : public Timer {
public:
    explicit QtTimer(QTimer* timer) : timer_(timer) {}
    // The job itself may drop its handle, so the QTimer outlives this call.
    ~QtTimer() override {
        if (!timer_) return;
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

// The jobs wait in a queue of ours, one empty event each calling for the next of them: so a nested event loop goes on
// with them, and a thread sanitizer sees the lock that hands them over.
class QtMainLoop::Home : public QObject {
public:
    void add(std::function<void()> job) {
        {
            const std::lock_guard guard(lock_);
            jobs_.push_back(std::move(job));
        }
        QCoreApplication::postEvent(this, new QEvent(QEvent::User));
    }

    bool event(QEvent* event) override {
        if (event->type() != QEvent::User) return QObject::event(event);
        std::unique_lock guard(lock_);
        const auto job = std::move(jobs_.front());
        jobs_.pop_front();
        guard.unlock();
        job();
        return true;
    }

private:
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
