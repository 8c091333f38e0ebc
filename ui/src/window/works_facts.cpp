// Collects what is known of the desktop, and what has to be looked for.
#include "works_facts.h"

#include <QGuiApplication>
#include <QSystemTrayIcon>

#include "app/app_model.h"
#include "app/link_loader.h"
#include "base/error.h"
#include "mix/render/hrtf_set.h"
#include "platform/file_manager_watch.h"
#include "ui/settings/works_page.h"

namespace brindlehum {
namespace {

DesktopFacts factsOf(AppModel& model) {
    DesktopFacts facts;
    Applications* applications = model.session().applications();
    const PluginList& plugins = model.monitor().plugins();
    facts.server = model.engine().devices().server();
    const FileManagerWatch* watch = model.session().fileManagerWatch();
    facts.display =
        DesktopFacts::displayOf(QGuiApplication::platformName().toStdString(), watch && watch->seesWindows());
    facts.hasTray = QSystemTrayIcon::isSystemTrayAvailable();
    facts.readsSelections = model.axTrusted();
    facts.isSpaceTaken = model.keyTap().isRefused();
    facts.keys = applications ? applications->access() : KeyAccess::noDisplay;
    facts.dawProblems = model.daw().problems();
    if (!plugins.isLooking() || !plugins.list().empty()) { facts.effects = plugins.list().size(); }
    return facts;
}

WorksPage::Found lookForHRTFSet(const std::filesystem::path& own) {
    constexpr double rate = 48000;  // Hz
    std::string problem;
    std::optional<std::filesystem::path> set;
    if (!own.empty()) {
        try {
            HRTFSet::load(own, rate);
            set = own;
        } catch (const Error& error) { problem = error.what(); }
    }
    std::error_code ignored;
    const auto usual = HRTFSet::defaultFile();
    if (!set && std::filesystem::exists(usual, ignored)) { set = usual; }
    return [set, problem](DesktopFacts& facts) {
        facts.hrtfSet = set;
        facts.hrtfProblem = problem;
    };
}

}  // namespace

WorksPage* makeWorksPage(AppModel& model) {
    const auto tool = [&model]() -> WorksPage::Look {
        return [custom = model.settings().value().ytDlpPath]() -> WorksPage::Found {
            return [found = LinkLoader::ytDlp(custom)](DesktopFacts& facts) { facts.downloadTool = found; };
        };
    };
    const auto keyring = [&session = model.session()]() -> WorksPage::Look {
        return [&session]() -> WorksPage::Found {
            return [has = session.hasKeyring()](DesktopFacts& facts) { facts.hasKeyring = has; };
        };
    };
    const auto hrtf = [&model]() -> WorksPage::Look {
        return [own = model.settings().value().hrtfFile] { return lookForHRTFSet(own); };
    };
    auto* page = new WorksPage([&model] { return factsOf(model); }, {tool, keyring, hrtf}, model.loop());
    PluginList& plugins = model.monitor().plugins();
    QObject::connect(page, &WorksPage::shown, &plugins, &PluginList::refresh);
    QObject::connect(&plugins, &PluginList::changed, page, &WorksPage::refresh);
    return page;
}

}  // namespace brindlehum
