// Autostart: whether the desktop starts Brindlehum with the session. The desktop's own file is the only state.
#pragma once

#include <QFileSystemWatcher>
#include <QObject>

#include <filesystem>
#include <string>

namespace brindlehum {

// Main thread. After freedesktop.org's rules for starting applications with the session, version 0.5.
class Autostart : public QObject {
    Q_OBJECT
public:
    // `program` is what the session starts; the file names it.
    Autostart(std::filesystem::path file, std::filesystem::path program);

    // `$XDG_CONFIG_HOME/autostart/brindlehum.desktop`.
    static std::filesystem::path defaultFile();

    // Looks at the file: a missing one, and one that a desktop's tool has switched off, mean no.
    bool isOn() const;
    // Writes the file or removes it. Returns what went wrong; then nothing has changed.
    std::string set(bool on);

Q_SIGNALS:
    void changed();  // somebody has written or removed the file

private:
    void watch();

    const std::filesystem::path file_;
    const std::filesystem::path program_;
    QFileSystemWatcher watcher_;
};

}  // namespace brindlehum
