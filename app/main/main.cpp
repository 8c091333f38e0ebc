// brindlehum [FILE...]: the resident tool.
#include <QApplication>
#include <QThread>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <vector>

#include "app/app_model.h"
#include "app/instance_link.h"
#include "library/catalog/catalog_location.h"
#include "platform/headless_session.h"
#include "platform/linux_audio.h"
#include "platform/linux_session.h"
#include "platform/qt_main_loop.h"
#include "quit_on_signal.h"
#include "ui/window/app_windows.h"

using namespace brindlehum;

namespace {

// All arguments are files; there are no options. Paths stay bytes, in any encoding.
std::vector<std::filesystem::path> filesOf(int argc, char** argv) {
    std::vector<std::filesystem::path> files;
    for (int i = 1; i < argc; ++i) {
        std::error_code error;
        auto path = std::filesystem::absolute(argv[i], error);
        if (!error) { files.push_back(std::move(path)); }
    }
    return files;
}

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

std::unique_ptr<Session> makeSession(bool hasScreen) {
    if (hasScreen) { return std::make_unique<LinuxSession>(); }
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
        std::printf("No display found, and the control port %d is taken by another program.\n",
                    int(ControlServer::port));
    }
    std::fflush(stdout);
}

// Ends without tearing down, since waiting for a file or a device that hangs would only keep the process alive. A
// playing sound gets time to fade, the last settings to be stored, and files being written to be finished or discarded;
// files that haven't been started stay as they were.
[[noreturn]] void end(AppModel& model, FileDefaults& defaults, InstanceLink& link, int code) {
    if (model.player().isPlaying()) {
        model.player().stopAndReturn();
        QThread::msleep(50);
    }
    constexpr double savingPatience = 20;  // seconds
    constexpr double editsPatience = 3;
    constexpr double settingsPatience = 3;
    defaults.flush(settingsPatience);
    model.tempEdits().finish(editsPatience);
    model.library().edits().finish(savingPatience);
    link.release();
    std::fflush(nullptr);
    std::_Exit(code);
}

}  // namespace

int main(int argc, char** argv) {
    const auto files = filesOf(argc, argv);
    const bool hasScreen = findScreen();
    int qtArguments = 1;  // hide the files from Qt, which takes some names as its own options
    QApplication application(qtArguments, argv);
    QApplication::setApplicationName(QStringLiteral("Brindlehum"));
    QApplication::setOrganizationName(QStringLiteral("Brindlehum"));
    QApplication::setDesktopFileName(QStringLiteral("brindlehum"));
    QApplication::setQuitOnLastWindowClosed(false);

    InstanceLink link;
    switch (link.start(files)) {
        case InstanceLink::Outcome::instance:
            break;
        case InstanceLink::Outcome::handedOver:
            return 0;
        case InstanceLink::Outcome::unanswered:
            std::fprintf(stderr, "Brindlehum is already running but doesn't answer\n");
            return 1;
    }

    QuitOnSignal quitOnSignal;
    QtMainLoop loop;
    const auto audio = makeAudioSystem(loop);
    FileDefaults defaults;
    const std::unique_ptr<Session> session = makeSession(hasScreen);
    AppModel model({loop, *audio, defaults, *session, defaultCatalogFile()});
    AppWindows windows(model);
    link.onFiles = [&model](const auto& handedOver) { model.openFiles(handedOver); };
    model.start();
    if (!hasScreen) { describeControlPort(model.control()); }
    if (!files.empty()) { model.openFiles(files); }
    end(model, defaults, link, QApplication::exec());
}
