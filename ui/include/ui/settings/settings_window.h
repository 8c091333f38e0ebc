// SettingsWindow: the settings as forms; every change takes effect at once.
#pragma once

#include <QWidget>

#include <functional>

namespace brindlehum {

class AudioDevices;
class LibraryRoots;
class LibrarySearch;
class SettingsStore;
class SpeakerTest;

class SettingsWindow : public QWidget {
    Q_OBJECT
public:
    // `addFolder` lets the user choose folders for the library and adds them. `watchesFileManager`: this desktop says
    // what the file manager shows.
    SettingsWindow(SettingsStore& settings, LibraryRoots& roots, LibrarySearch& search, const AudioDevices& devices,
                   SpeakerTest& test, std::function<void()> addFolder, bool watchesFileManager = true);

protected:
    void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace brindlehum
