#include "ui/browser_menu.h"

#include <QLocale>
#include <QMenu>

namespace brindlehum {

void fillBrowserMenu(QMenu& menu, const BrowserActions::Files& files, const BrowserActions& actions) {
    if (actions.openInEditor)
        menu.addAction("Open in Editor", [act = actions.openInEditor, first = files.front()] { act(first); });
    const auto add = [&](const QString& text, const std::function<void(const BrowserActions::Files&)>& act) {
        if (act) menu.addAction(text, [act, files] { act(files); });
    };
    const QString count = QLocale().toString(static_cast<qulonglong>(files.size()));
    add(files.size() < 2 ? QString("Make Temp Edits") : "Make Temp Edits (" + count + " files)", actions.makeTempEdits);
    add("Show in File Manager", actions.reveal);
    add("Copy Path", actions.copyPath);
}

}  // namespace brindlehum
