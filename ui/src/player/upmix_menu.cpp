// Texts and entries of the upmix.
#include "ui/player/upmix_menu.h"

#include <QCoreApplication>
#include <QMenu>

#include "mix/player/upmix_tuning.h"
#include "ui/look/menu_button.h"
#include "ui/look/plain_tool_tip.h"
#include "ui/look/utf8_text.h"

namespace brindlehum {

void addUpmixChoices(QMenu& menu, UpmixTuning& upmix) {
    const UpmixSettings& now = upmix.now();
    menu.setToolTipsVisible(true);
    addChoice(menu, QCoreApplication::translate("UpmixMenu", "Off"), !now.enabled, [&upmix] { upmix.setOn(false); });
    menu.addSeparator();
    for (const UpmixPreset preset : allUpmixPresets) {
        const bool isChosen = now.enabled && now.own.empty() && now.preset == preset;
        addChoice(menu, textOf(displayName(preset)), isChosen, [&upmix, preset] {
            upmix.choose(std::string(rawValue(preset)));
        })->setToolTip(textOf(description(preset)));
    }
    if (upmix.own().empty()) { return; }
    menu.addSeparator();
    for (const OwnUpmixPreset& preset : upmix.own()) {
        const bool isChosen = now.enabled && now.own == preset.name;
        const QString name = textOf(preset.name);
        const QString shown = menu.fontMetrics().elidedText(name, Qt::ElideRight, 300);
        addChoice(menu, shown, isChosen, [&upmix, own = preset.name] { upmix.choose(own); })
            ->setToolTip(plainToolTip(QCoreApplication::translate("UpmixMenu", "%1, made from %2")
                                          .arg(name, textOf(displayName(preset.base)))));
    }
}

QString upmixChoice(const UpmixTuning& upmix) {
    if (!upmix.now().enabled) { return QCoreApplication::translate("UpmixMenu", "Off"); }
    const QString name = textOf(presetName(upmix.now()));
    return upmix.isChanged() ? QCoreApplication::translate("UpmixMenu", "%1 (changed)").arg(name) : name;
}

QString upmixProblem(const ListeningSetup& listening) {
    switch (listening.upmixState()) {
        case UpmixState::impossible:
            return QCoreApplication::translate("UpmixMenu", "An upmix of this sound would fill no further speaker");
        case UpmixState::unheard:
            return QCoreApplication::translate("UpmixMenu",
                                               "Not heard: without an HRTF set headphones play the stereo fold-down");
        case UpmixState::off:
        case UpmixState::on:
            break;
    }
    return {};
}

}  // namespace brindlehum
