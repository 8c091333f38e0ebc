// Session: the requests to the user's desktop session, one interface for each subject.
#pragma once

#include <filesystem>
#include <vector>

namespace brindlehum {

// Shows folders and files. Main thread. Ignores failures, since the user sees that nothing appeared.
class FileManager {
public:
    virtual ~FileManager() = default;
    // Opens a folder.
    virtual void openFolder(const std::filesystem::path& folder) = 0;
    // Shows files or folders selected in their folder; does nothing for an empty list.
    virtual void reveal(const std::vector<std::filesystem::path>& items) = 0;
};

class Applications;      // the applications on the desktop, and keys pressed in one of them
class FileManagerWatch;  // what the file manager in front shows
class KeyGrab;           // keys that reach us while another application has the focus
class FilePreviewer;     // requests to preview a file
class Clipboard;         // texts and files exchanged by copy and paste
class ChildProcesses;    // programs run as children, with what they print
class HttpClient;        // requests to servers
class Secrets;           // passwords in the user's keyring
class MediaSession;      // what plays, for the desktop's media keys, and their wishes

// One for each process, made by main or by a test. Main thread. Null members are features that this session lacks.
class Session {
public:
    virtual ~Session() = default;
    virtual FileManager& fileManager() = 0;
    // Whether translucent windows let those below shine through now.
    virtual bool blendsWindows() { return false; }
    // Whether a keyring of the desktop answers or would start. Any thread; may wait a second for it.
    virtual bool hasKeyring() { return false; }
    virtual Applications* applications() { return nullptr; }
    virtual FileManagerWatch* fileManagerWatch() { return nullptr; }
    virtual KeyGrab* keyGrab() { return nullptr; }
    virtual FilePreviewer* filePreviewer() { return nullptr; }
    virtual Clipboard* clipboard() { return nullptr; }
    virtual ChildProcesses* childProcesses() { return nullptr; }
    virtual HttpClient* http() { return nullptr; }
    virtual Secrets* secrets() { return nullptr; }
    virtual MediaSession* mediaSession() { return nullptr; }
};

}  // namespace brindlehum
