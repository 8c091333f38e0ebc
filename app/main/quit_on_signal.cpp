// QuitOnSignal: an eventfd carries the signal from the handler to the event loop.
#include "quit_on_signal.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <QCoreApplication>
#include <cerrno>
#include <csignal>
#include <cstdint>

namespace brindlehum {

namespace {

int wakeUp = -1;

// A signal handler may safely do only this one write. It fails only when the loop has been woken already.
void onSignal(int) {
    const int saved = errno;
    const uint64_t one = 1;
    [[maybe_unused]] const auto written = ::write(wakeUp, &one, sizeof one);
    errno = saved;
}

}  // namespace

QuitOnSignal::QuitOnSignal() {
    wakeUp = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (wakeUp < 0) { return; }
    notifier_ = std::make_unique<QSocketNotifier>(wakeUp, QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, [] { QCoreApplication::quit(); });
    struct sigaction action {};
    action.sa_handler = onSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGTERM, &action, nullptr);
    ::sigaction(SIGINT, &action, nullptr);
}

}  // namespace brindlehum
