// InstanceLink: one running Brindlehum for each user and session; later starts hand their files to it.
#pragma once

#include <QByteArray>
#include <QObject>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QLocalServer;
class QLocalSocket;
class QLockFile;

namespace brindlehum {

// The message from a later start to the running instance: each path's bytes and a NUL, then one more NUL. Paths are
// bytes, not text, so names in any encoding arrive unchanged.
namespace InstanceMessage {
QByteArray encode(const std::vector<std::filesystem::path>& files);
// None while the message isn't complete.
std::optional<std::vector<std::filesystem::path>> decode(const QByteArray& bytes);
}  // namespace InstanceMessage

// Main thread of its process.
class InstanceLink : public QObject {
    Q_OBJECT
public:
    enum class Outcome {
        instance,    // this process is the instance; later starts call its onFiles
        handedOver,  // another process is the instance, and has taken the files
        unanswered,  // another process is the instance, but doesn't answer
    };

    // Lock and socket are files in `folder`. If the folder isn't writable, every start becomes an instance.
    explicit InstanceLink(std::filesystem::path folder = runtimeFolder());
    ~InstanceLink() override;

    // Decides whether this process is the instance. `files` are absolute. Blocks for up to `patience` seconds while
    // another process starts, ends or is busy. Takes over a lock and a socket left behind by a crash.
    Outcome start(const std::vector<std::filesystem::path>& files, double patience = 5);
    // Lets another process become the instance.
    void release();

    // Called with the files of a later start; an empty list only asks for the window.
    std::function<void(const std::vector<std::filesystem::path>& files)> onFiles;

    // `$XDG_RUNTIME_DIR`, else the user's own folder in the temporary folder.
    static std::filesystem::path runtimeFolder();

private:
    bool claim();
    bool handOver(const QByteArray& message, int milliseconds);
    void accept();
    void receive(QLocalSocket* peer);

    std::filesystem::path folder_;
    std::unique_ptr<QLockFile> lock_;
    std::unique_ptr<QLocalServer> server_;
};

}  // namespace brindlehum
