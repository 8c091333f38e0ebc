// brindlehum-inserts: hosts the monitor's inserts in a process of its own, so that a maker's code that crashes or hangs
// takes nothing else along. Started by the monitor, which speaks to it over the standard input and output.
#include <fcntl.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QSocketNotifier>
#include <clocale>
#include <csignal>
#include <cstring>
#include <nlohmann/json.hpp>

#include "insert_session.h"
#include "platform/linux_audio.h"
#include "platform/linux_plugins.h"
#include "platform/qt_main_loop.h"

using namespace brindlehum;

namespace {

int answers = STDOUT_FILENO;
InsertSession* session = nullptr;

void send(const char* text, size_t size) {
    while (size > 0) {
        const ssize_t written = ::write(answers, text, size);
        if (written <= 0) { return; }  // the monitor has gone, and we go with the end of our input
        text += written;
        size -= size_t(written);
    }
}

// Says whose code crashed, with nothing but what a signal handler may call, and dies of the signal.
void lastWords(int signal) {
    const bool isMain = ::gettid() == ::getpid();
    const char* const window = session && isMain ? session->lastWordsOfWindow() : nullptr;
    if (window) { send(window, std::strlen(window)); }
    const int place = session && !window ? session->busyWith() : -1;
    char text[] = "\n{\"is\":\"crash\",\"insert\":-1}\n";
    if (place >= 0 && place < 100) {
        char* const digits = std::strstr(text, "-1");
        digits[0] = char('0' + place / 10);
        digits[1] = char('0' + place % 10);
        if (place < 10) {  // no leading zero in JSON
            digits[0] = ' ';
        }
    }
    if (!window) { send(text, sizeof text - 1); }
    std::signal(signal, SIG_DFL);
    std::raise(signal);
}

// What plug-ins print to the standard output must not stand among our answers.
void keepAnswersApart() {
    answers = ::dup(STDOUT_FILENO);
    ::fcntl(answers, F_SETFD, FD_CLOEXEC);
    ::dup2(STDERR_FILENO, STDOUT_FILENO);
}

// Hands whole lines to the session; false at the end of the input.
bool readLines(std::string& rest) {
    char bytes[65536];
    const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
    if (count <= 0) { return false; }
    rest.append(bytes, size_t(count));
    for (size_t end = rest.find('\n'); end != std::string::npos; end = rest.find('\n')) {
        const std::string line = rest.substr(0, end);
        rest.erase(0, end + 1);
        session->handle(line);
    }
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGINT, SIG_IGN);  // a terminal sends it to the monitor, too, which ends us when it has what it needs
    keepAnswersApart();
    const QCoreApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");  // Qt has set the user's
    QtMainLoop loop;
    const auto audio = makeAudioSystem(loop);
    const auto host = makePluginHost();
    InsertSession inserts(*audio, *host, loop, [](const nlohmann::json& message) {
        const std::string line = message.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
        send(line.data(), line.size());
    });
    session = &inserts;
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT}) { std::signal(signal, lastWords); }
    std::string rest;
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [&] {
        if (!readLines(rest)) { QCoreApplication::quit(); }
    });
    const int result = QCoreApplication::exec();
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT}) { std::signal(signal, SIG_DFL); }
    session = nullptr;
    return result;
}
