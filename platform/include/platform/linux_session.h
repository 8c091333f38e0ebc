// LinuxSession: requests to the desktop over D-Bus, or through the freedesktop tools if no service answers.
#pragma once

#include <QObject>

#include "platform/linux_media_session.h"
#include "platform/qt_child_processes.h"
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
    FileManager& fileManager() override { return fileManager_; }
    ChildProcesses* childProcesses() override { return &childProcesses_; }
    MediaSession* mediaSession() override { return &mediaSession_; }

private:
    LinuxFileManager fileManager_;
    QtChildProcesses childProcesses_;
    LinuxMediaSession mediaSession_;
};

}  // namespace brindlehum
