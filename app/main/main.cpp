// brindlehum [FILE or FOLDER]...: the resident tool. As brindlehum-resident it opens no window.
#include <QApplication>
#include <QLocale>
#include <QThread>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "app/app_model.h"
#include "app/start_arguments.h"
#include "library/catalog/catalog_location.h"
#include "platform/headless_session.h"
#include "platform/linux_audio.h"
#include "platform/linux_session.h"
#include "platform/qt_main_loop.h"
#include "quit_on_signal.h"
#include "ui/look/translations.h"
#include "ui/window/app_windows.h"

using namespace brindlehum;

namespace {

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value && *value;
}

// Without a display, makes the windows off screen and returns false.
bool findScreen() {
    if (isSet("QT_QPA_PLATFORM") || isSet("DISPLAY") || isSet("WAYLAND_DISPLAY")) { return true; }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    return false;
}

std::unique_ptr<Session> makeSession(bool hasScreen, MainLoop& loop) {
    if (hasScreen) { return std::make_unique<LinuxSession>(loop); }
    return std::make_unique<HeadlessSession>();
}

void describeControlPort(const ControlServer& control) {
    if (control.isListening()) {
        std::printf(
            "No display found: Brindlehum runs without a window. Drive it through its control port:\n"
            "  curl -H 'X-Brindlehum: 1' http://127.0.0.1:%d/status\n"
            "  curl -H 'X-Brindlehum: 1' http://127.0.0.1:%d/toggle\n",
            int(control.listeningPort()), int(control.listeningPort()));
    } else {
        std::printf("No display found. %s.\n", control.problem().c_str());
    }
    std::fflush(stdout);
}

// Ends without tearing down, since waiting for a file or a device that hangs would only keep the process alive. A
// playing sound gets time to fade, the last settings to be stored, and files being written to be finished or discarded;
// files that haven't been started stay as they were.
[[noreturn]] void end(AppModel& model, FileDefaults& defaults, Session& session, InstanceLink& link, int code) {
    if (model.player().isPlaying() || model.editor().transport().isPlaying()) {
        model.player().stopAndReturn();
        model.editor().transport().stop();
        QThread::msleep(50);
    }
    constexpr double savingPatience = 20;  // seconds
    constexpr double editsPatience = 3;
    constexpr double settingsPatience = 3;
    constexpr double exportPatience = 3;  // for what is stopped to be taken back
    model.player().dragOut().progress().cancel();
    model.links().cancel();
    model.editor().generator().cancel();
    defaults.flush(settingsPatience);
    model.tempEdits().finish(editsPatience);
    model.editor().generator().finish(editsPatience);
    model.player().dragOut().queue().drainFor(exportPatience);
    model.library().edits().finish(savingPatience);
    model.editor().document().finish(editsPatience);
    if (Applications* applications = session.applications()) { applications->finish(); }
    link.release();
    std::fflush(nullptr);
    std::_Exit(code);
}

int print(StartArguments::Wish wish) {
    if (wish == StartArguments::Wish::help) {
        std::fputs(StartArguments::help, stdout);
    } else {
        std::puts("Brindlehum " BRINDLEHUM_VERSION);
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    auto arguments = StartArguments::parse({argv + 1, argv + argc});
    if (argc == 1 && StartArguments::isResident(argv[0])) { arguments.request.aim = StartAim::stayQuiet; }
    if (arguments.wish != StartArguments::Wish::open) { return print(arguments.wish); }
    const StartRequest& request = arguments.request;
    for (const auto& problem : request.problems) { std::fprintf(stderr, "brindlehum: %s\n", problem.c_str()); }
    const bool hasScreen = findScreen();
    int qtArguments = 1;  // hide the files from Qt, which takes some names as its own options
    QApplication application(qtArguments, argv);
    std::setlocale(LC_NUMERIC, "C");  // Qt has set the user's, in which C libraries would write 44,1
    QApplication::setApplicationName(QStringLiteral("Brindlehum"));
    QApplication::setOrganizationName(QStringLiteral("Brindlehum"));
    QApplication::setDesktopFileName(QStringLiteral("brindlehum"));
    QApplication::setQuitOnLastWindowClosed(false);

    const Translations translations(QLocale::system().uiLanguages());
    InstanceLink link;
    if (request.files.empty() && !request.problems.empty()) {
        link.tell(request);  // its window shows the problems, too
        return 1;
    }
    switch (link.start(request)) {
        case InstanceLink::Outcome::instance:
            break;
        case InstanceLink::Outcome::handedOver:
            return request.problems.empty() ? 0 : 1;
        case InstanceLink::Outcome::unanswered:
            std::fprintf(stderr, "Brindlehum is already running but doesn't answer\n");
            return 1;
    }

    QuitOnSignal quitOnSignal;
    QtMainLoop loop;
    const auto audio = makeAudioSystem(loop);
    FileDefaults defaults;
    const std::unique_ptr<Session> session = makeSession(hasScreen, loop);
    AppModel model({loop, *audio, defaults, *session, defaultCatalogFile(), {}, usersDAWTable()});
    AppWindows windows(model, request.aim == StartAim::stayQuiet);
    link.onRequest = [&model](const StartRequest& handedOver) { model.open(handedOver); };
    model.start();
    if (!hasScreen) { describeControlPort(model.control()); }
    if (const auto problem = defaults.problem()) { std::fprintf(stderr, "%s\n", problem->c_str()); }
    if (request != StartRequest()) { model.open(request); }
    end(model, defaults, *session, link, QApplication::exec());
}
