// link: the sound of a web page or address, into the pulls folder or another one.
#include <QTimer>
#include <filesystem>
#include <iostream>

#include "app/link_downloads.h"
#include "application.h"
#include "base/error.h"
#include "command.h"
#include "interrupt.h"
#include "library/team/metadata_save.h"
#include "platform/qt_child_processes.h"
#include "platform/qt_main_loop.h"
#include "users_settings.h"

namespace brindlehum::cli {
namespace {

constexpr int lookEvery = 100;  // milliseconds

}  // namespace

bool link(Words words) {
    if (words.size() != 1) { throw UsageError(words.empty() ? "no link given" : "more than one link given"); }
    const Application application;
    QtMainLoop loop;
    MemoryDefaults defaults;
    takeUsersSettings(defaults, {"settings.v1"});
    SettingsStore settings(defaults);
    PlayerMessage message(loop);
    QtChildProcesses children;
    LinkDownloads links(&children, message, settings, loop);
    std::filesystem::path arrived;
    links.arrived = [&](const std::filesystem::path& file, const std::string&) { arrived = file; };
    endAtInterrupt();
    links.open(words[0]);
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        if (interrupted()) { links.cancel(); }
        if (links.running() == 0) { QCoreApplication::quit(); }
    });
    watch.start(lookEvery);
    QCoreApplication::exec();
    if (arrived.empty()) { throw Error(message.text().value_or("Cancelled")); }
    MetadataSave::save(arrived, {{{"SOURCEID", words[0]}}, std::nullopt}, nullptr, {}, {});
    print({{"file", arrived.string()}, {"link", words[0]}});
    return true;
}

}  // namespace brindlehum::cli
