// daw: presses the key of a command in the DAW at hand, and says whether it arrived.
#include <optional>

#include "app/daw_control.h"
#include "application.h"
#include "base/error.h"
#include "command.h"
#include "platform/linux_session.h"
#include "platform/qt_main_loop.h"

namespace brindlehum::cli {
namespace {

struct Wish {
    std::string command;
    std::optional<std::string> app;
};

Wish wishOf(Words words) {
    std::optional<std::string> command, app;
    for (size_t i = 0; i < words.size(); ++i) {
        if (words[i] == "--app") {
            if (++i == words.size()) { throw UsageError("--app needs a name"); }
            app = words[i];
        } else if (command) {
            throw UsageError("more than one command given");
        } else {
            command = words[i];
        }
    }
    if (!command) { throw UsageError("no command given"); }
    return {*command, app};
}

}  // namespace

bool daw(Words words) {
    const Wish wish = wishOf(words);
    const Application application;
    QtMainLoop loop;
    LinuxSession session(loop);
    DAWControl control(session.applications(), usersDAWTable());
    std::string failure;
    const auto reply = control.send(wish.command, wish.app, [&](const std::string& problem) {
        failure = problem;
        QCoreApplication::quit();
    });
    for (const std::string& problem : control.problems()) { printError(problem); }
    if (!reply.isQueued) { throw Error(reply.message); }
    QCoreApplication::exec();
    session.applications()->finish();
    if (!failure.empty()) { throw Error(failure); }
    print({{"result", reply.message}});
    return true;
}

}  // namespace brindlehum::cli
