// InstanceLink: one running Brindlehum for each user and session; later starts hand their files to it.
#pragma once

#include <QByteArray>
#include <QObject>
#include <filesystem>
#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class QLocalServer;
class QLocalSocket;
class QLockFile;

namespace brindlehum {

// What a start wants with its files.
enum class StartAim {
    show,       // the first one in the browser or the player, which plays it if auto-play is on
    edit,       // the first one goes to the editor and isn't played
    play,       // the first one plays
    tempEdits,  // temp edits of all
    stayQuiet,  // the session starts the program, not the user: no window opens
};

// What a start asks for.
struct StartRequest {
    std::vector<std::filesystem::path> files;  // absolute; folders, too
    std::vector<std::string> problems;         // with its arguments, a line each, never beginning with a slash
    StartAim aim = StartAim::show;
    bool operator==(const StartRequest&) const = default;
};

// The message from a later start to the running instance: the bytes of each path, problem or mark and a NUL, then one
// more NUL. Paths are bytes, not text, so names in any encoding arrive unchanged.
namespace InstanceMessage {
inline constexpr qsizetype maxBytes = 4 << 20;  // the system passes a program half of that
QByteArray encode(const StartRequest& request);
// None while the message isn't complete.
std::optional<StartRequest> decode(const QByteArray& bytes);
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

    // Lock and socket are files in `folder`. If that isn't writable, or empty, every start becomes an instance.
    explicit InstanceLink(std::filesystem::path folder = runtimeFolder());
    ~InstanceLink() override;

    // Decides whether this process is the instance. Blocks for up to `patience` seconds while
    // another process starts, ends or is busy. Takes over a lock and a socket left behind by a crash.
    Outcome start(const StartRequest& request, double patience = 5);
    // Hands the request to the instance, if one runs, and never becomes it.
    bool tell(const StartRequest& request, double patience = 5);
    // Lets another process become the instance.
    void release();

    // Called with what a later start asks for; an empty request only asks for the window.
    std::function<void(const StartRequest& request)> onRequest;
    // The most unfinished messages at once. One more drops the oldest.
    static constexpr size_t maxPeers = 16;

    // `$XDG_RUNTIME_DIR`, else a folder of the user in the temporary folder, else one in the cache folder; empty if
    // there is none that belongs to the user alone.
    static std::filesystem::path runtimeFolder();

private:
    bool claim();
    bool handOver(const QByteArray& message, int milliseconds);
    void accept();
    void receive(QLocalSocket* peer);
    void drop(QLocalSocket* peer);

    std::filesystem::path folder_;
    std::unique_ptr<QLockFile> lock_;
    std::unique_ptr<QLocalServer> server_;
    struct Peer {
        QLocalSocket* socket;
        QByteArray received;
    };
    std::list<Peer> peers_;  // whose message isn't complete, the oldest first
};

}  // namespace brindlehum
