// SettingsWindow: the settings as forms; every change takes effect at once.
#pragma once

#include <QWidget>

#include <functional>

#include "platform/disk_work.h"

class QTabWidget;

namespace brindlehum {

class AudioDevices;
class FormScroll;
class GenerationKey;
class GenerationSettings;
class LibraryRoots;
class LibrarySearch;
class Session;
class SettingsStore;
class SpeakerTest;

class SettingsWindow : public QWidget {
    Q_OBJECT
public:
    // `addFolder` lets the user choose folders for the library and adds them.
    SettingsWindow(SettingsStore& settings, LibraryRoots& roots, LibrarySearch& search, const AudioDevices& devices,
                   SpeakerTest& test, Session& session, MainLoop& loop, std::function<void()> addFolder,
                   GenerationKey& generationKey);
    // Goes to the generation service's address.
    void showGeneration();

    // Behind the others; takes ownership.
    void addPage(QWidget* page, const QIcon& icon, const QString& title);
    void showPage(const QWidget* page);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QTabWidget* tabs_ = nullptr;
    FormScroll* audition_;
    GenerationSettings* generation_;
    DiskWork looks_;  // ends before the pages, which lose their lines with it
};

}  // namespace brindlehum
