// LinuxSession: requests to the desktop over D-Bus, or through the freedesktop tools if no service answers.
#pragma once

#include <QObject>
#include <functional>
#include <memory>

#include "platform/applications.h"
#include "platform/file_manager_watch.h"
#include "platform/file_previewer.h"
#include "platform/key_grab.h"
#include "platform/linux_media_session.h"
#include "platform/main_loop.h"
#include "platform/qt_child_processes.h"
#include "platform/qt_http_client.h"
#include "platform/qt_secrets.h"
#include "platform/session.h"

namespace brindlehum {

class LinuxFileManager : public FileManager {
public:
    void openFolder(const std::filesystem::path& folder) override;
    // Asks `org.freedesktop.FileManager1` to show the items; opens their folder if there is no such service.
    void reveal(const std::vector<std::filesystem::path>& items) override;

private:
    QObject answers_;  // owns the objects that wait for replies
};

class LinuxSession : public Session {
public:
    // On Wayland nobody says where windows are, and no key can be taken from one: there no DAW is driven, and of the
    // file manager only what it says itself is known: its selection, and which files it wants previewed.
    explicit LinuxSession(MainLoop& loop);
    ~LinuxSession() override;
    FileManager& fileManager() override { return fileManager_; }
    bool blendsWindows() override { return isComposited_ && isComposited_(); }
    ChildProcesses* childProcesses() override { return &childProcesses_; }
    HttpClient* http() override { return &http_; }
    Secrets* secrets() override { return &secrets_; }
    MediaSession* mediaSession() override { return &mediaSession_; }
    bool hasKeyring() override;
    Applications* applications() override { return applications_.get(); }
    FileManagerWatch* fileManagerWatch() override { return watch_.get(); }
    KeyGrab* keyGrab() override { return grab_.get(); }
    FilePreviewer* filePreviewer() override { return previewer_.get(); }

private:
    std::unique_ptr<FileManagerWatch> watch_;
    std::unique_ptr<Applications> applications_;  // may look at the windows of watch_
    std::unique_ptr<KeyGrab> grab_;
    std::unique_ptr<FilePreviewer> previewer_;
    std::function<bool()> isComposited_;  // none on Wayland
    LinuxFileManager fileManager_;
    QtChildProcesses childProcesses_;
    QtHttpClient http_;
    QtSecrets secrets_;
    LinuxMediaSession mediaSession_;
};

}  // namespace brindlehum
