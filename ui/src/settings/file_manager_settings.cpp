// Three switches, and a line on what this desktop can do.
#include "ui/settings/file_manager_settings.h"

#include <QCheckBox>
#include <QLabel>
#include <QVBoxLayout>

#include "settings/settings_store.h"
#include "ui/look/setting_action.h"

namespace brindlehum {

FileManagerSettings::FileManagerSettings(SettingsStore& settings, bool seesWindows) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(8);
    column->addWidget(
        makeSetting(tr("Show the audition panel under file-manager windows"), settings, &AppSettings::finderPanel));
    auto* space =
        makeSetting(tr("Space plays audio files instead of the preview"), settings, &AppSettings::spacePlaysInFinder);
    column->addWidget(space);
    column->addWidget(makeSetting(tr("Auto-play when the selection changes"), settings, &AppSettings::autoPlay));
    auto* note = new QLabel(
        seesWindows ? tr("For Files (Nautilus) and Thunar. Space in a picture, a folder or a name being typed "
                         "stays theirs.")
                    : tr("On Wayland, for Files (Nautilus) only. The panel needs an X11 session."));
    note->setProperty("role", "secondary");
    note->setWordWrap(true);
    column->addWidget(note);
    // Without the panel the file manager is left alone, so Space is, too.
    const auto follow = [space, &settings] { space->setEnabled(settings.value().finderPanel); };
    connect(&settings, &SettingsStore::changed, space, follow);
    follow();
}

}  // namespace brindlehum
