#include "interrupt.h"

#include <csignal>

namespace brindlehum::cli {
namespace {

volatile std::sig_atomic_t pressed = 0;

}  // namespace

void endAtInterrupt() {
    struct sigaction action {};
    if (::sigaction(SIGINT, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) { return; }
    action = {};
    action.sa_handler = [](int) { pressed = 1; };
    action.sa_flags = SA_RESETHAND | SA_RESTART;
    ::sigaction(SIGINT, &action, nullptr);
}

bool interrupted() {
    return pressed != 0;
}

}  // namespace brindlehum::cli
