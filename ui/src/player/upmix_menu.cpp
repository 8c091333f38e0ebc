// Texts and entries of the upmix.
#include "ui/player/upmix_menu.h"

#include <QMenu>

#include "mix/player/upmix_tuning.h"
#include "ui/look/menu_button.h"
#include "ui/look/plain_tool_tip.h"
#include "ui/look/utf8_text.h"

namespace brindlehum {

void addUpmixChoices(QMenu& menu, UpmixTuning& upmix) {
    const UpmixSettings& now = upmix.now();
    menu.setToolTipsVisible(true);
    addChoice(menu, "Off", !now.enabled, [&upmix] { upmix.setOn(false); });
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
        addChoice(menu, shown, isChosen, [&upmix, own = preset.name] {
            upmix.choose(own);
        })->setToolTip(plainToolTip(name + ", made from " + textOf(displayName(preset.base))));
    }
}

QString upmixChoice(const UpmixTuning& upmix) {
    if (!upmix.now().enabled) { return "Off"; }
    return textOf(presetName(upmix.now())) + (upmix.isChanged() ? " (changed)" : "");
}

QString upmixProblem(const ListeningSetup& listening) {
    switch (listening.upmixState()) {
        case UpmixState::impossible:
            return "An upmix of this sound would fill no further speaker";
        case UpmixState::unheard:
            return "Not heard: without an HRTF set headphones play the stereo fold-down";
        case UpmixState::off:
        case UpmixState::on:
            break;
    }
    return {};
}

}  // namespace brindlehum
