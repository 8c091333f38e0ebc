// The browser's context menu, entry by entry.
#include "ui/browser/browser_menu.h"

#include <QCoreApplication>
#include <QLocale>
#include <QMenu>
#include <algorithm>

#include "audio/probe/audio_file_info.h"

namespace brindlehum {

void fillBrowserMenu(QMenu& menu, const BrowserActions::Files& files, const BrowserActions& actions) {
    if (actions.openInEditor) {
        menu.addAction(QCoreApplication::translate("BrowserMenu", "Open in Editor"),
                       [act = actions.openInEditor, first = files.front()] { act(first); });
    }
    const auto add = [&](const QString& text, const std::function<void(const BrowserActions::Files&)>& act) {
        return act ? menu.addAction(text, [act, files] { act(files); }) : nullptr;
    };
    const QString count = QLocale().toString(static_cast<qulonglong>(files.size()));
    const QString edits = files.size() < 2
                              ? QCoreApplication::translate("BrowserMenu", "Make Temp Edits")
                              : QCoreApplication::translate("BrowserMenu", "Make Temp Edits (%1 files)").arg(count);
    auto* makeEdits = add(edits, actions.makeTempEdits);
    if (actions.setBars && files.size() == 1) {
        auto* bars = menu.addAction(QCoreApplication::translate("BrowserMenu", "Set Bars…"),
                                    [act = actions.setBars, file = files.front()] { act(file); });
        bars->setEnabled(AudioFileInfo::isAudioPath(files.front()));
    }
    auto* rename = add(QCoreApplication::translate("BrowserMenu", "Rename to UCS Names…"), actions.renameToUCS);
    for (auto* entry : {makeEdits, rename}) {
        if (entry) { entry->setEnabled(std::ranges::any_of(files, AudioFileInfo::isAudioPath)); }
    }
    add(QCoreApplication::translate("BrowserMenu", "Show in File Manager"), actions.reveal);
    add(QCoreApplication::translate("BrowserMenu", "Copy Path"), actions.copyPath);
}

}  // namespace brindlehum
