// Links become sounds: the download tool's words, stand-ins for it, and the real one against a server of our own.
#include "app/link_downloads.h"

#include <gmock/gmock.h>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <QTcpServer>
#include <QTcpSocket>
#include <fstream>

#include "app/link_loader.h"
#include "audio/probe/audio_file_info.h"
#include "platform/qt_child_processes.h"
#include "platform/qt_main_loop.h"
#include "support/audio_files.h"
#include "support/event_loop_test.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

TEST(LinkLoader, TakesWebLinksAlone) {
    const std::vector<std::pair<std::string, std::string>> cases = {
        {" \n https://a.example/b?c=d#e\n", "https://a.example/b?c=d#e"},
        {"HTTP://A.example", "HTTP://A.example"},
        {"httpwhatever:x", "httpwhatever:x"},
        {"ftp://a.example/b.wav", ""},
        {"a line of text", ""},
        {"http://a.example/ --exec=x", ""},
        {"--exec http://a.example", ""},
        {"/home/a.wav", ""},
        {"", ""},
    };
    for (const auto& [text, link] : cases) { EXPECT_EQ(LinkLoader::linkIn(text).value_or(""), link) << text; }
}

TEST(LinkLoader, AsksInTheToolsWords) {
    EXPECT_THAT(
        LinkLoader::arguments("/a/100% b/%(id)s", "http://l"),
        ElementsAre("--no-playlist", "--no-progress", "-x", "--audio-format", "wav", "-o",
                    "/a/100%% b/%%(id)s/%(title).120B [%(id)s].%(ext)s", "--print", "after_move:filepath", "http://l"));
    EXPECT_EQ(LinkLoader::environment("/x").at("PATH"), "/usr/local/bin:/usr/bin:/bin:/x");
}

TEST(LinkLoader, UnderstandsWhatTheToolPrints) {
    struct Case {
        ChildResult result;
        std::string file, problem;
    };
    const std::vector<Case> cases = {
        {{{}, 0, "/a.wav\n\nWARNING: b\n", {}}, "/a.wav", ""},
        {{{}, 0, "/a.wav\n/b \xff.wav", {}}, "/b \xff.wav", ""},
        {{{}, 1, "/a.wav\n", {}}, "", "yt-dlp failed"},
        {{{}, 0, "a.wav\n", "ERROR: one\nERROR: two\nbye\n"}, "", "ERROR: two"},
        {{{}, 2, {}, "[x] ERROR \xff here"}, "", "[x] ERROR \xef\xbf\xbd here"},
        {{{}, -1, {}, {}}, "", "yt-dlp failed"},
        {{"No such file", -1, {}, {}}, "", "No such file"},
    };
    for (const auto& [result, file, problem] : cases) {
        const auto outcome = LinkLoader::outcome(result);
        EXPECT_EQ(outcome.file, file);
        EXPECT_EQ(outcome.problem, problem);
    }
}

// Serves a folder's files, each whole, and redirects "/moved/X" to "/X".
class FileServer : public QTcpServer {
public:
    explicit FileServer(fs::path folder) : folder_(std::move(folder)) { listen(QHostAddress::LocalHost); }
    std::string address(const std::string& name) const {
        return "http://127.0.0.1:" + std::to_string(serverPort()) + "/" + name;
    }

protected:
    void incomingConnection(qintptr handle) override {
        auto* socket = new QTcpSocket(this);
        socket->setSocketDescriptor(handle);
        connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
            request_ += socket->readAll();
            if (!request_.contains("\r\n\r\n")) { return; }
            const auto words = request_.split(' ');
            request_.clear();
            socket->write(
                answer(QByteArray::fromPercentEncoding(words.value(1).mid(1)).toStdString(), words.value(0) == "HEAD"));
            socket->disconnectFromHost();
        });
    }

private:
    QByteArray answer(const std::string& name, bool headOnly) const {
        if (name.starts_with("moved/")) {
            return QByteArray("HTTP/1.1 302 Found\r\nContent-Length: 0\r\nConnection: close\r\nLocation: /") +
                   name.substr(6).c_str() + "\r\n\r\n";
        }
        std::ifstream file(folder_ / name, std::ios::binary);
        if (!file) { return "HTTP/1.1 404 Not Found\r\nContent-Length: 0\r\nConnection: close\r\n\r\n"; }
        const std::string body((std::istreambuf_iterator<char>(file)), {});
        const char* type = name.ends_with(".html") ? "text/html" : name.ends_with(".flac") ? "audio/flac" : "audio/wav";
        const QByteArray head = QByteArray("HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Type: ") + type +
                                "\r\nContent-Length: " + QByteArray::number(qlonglong(body.size())) + "\r\n\r\n";
        return headOnly ? head : head + QByteArray(body.data(), qsizetype(body.size()));
    }
    fs::path folder_;
    QByteArray request_;
};

// Waits for the end of a process that may be no child of ours.
bool ends(int pid) {
    const auto handle = int(::syscall(SYS_pidfd_open, pid, 0));
    if (handle < 0) { return errno == ESRCH; }
    pollfd end{handle, POLLIN, 0};
    const bool ended = ::poll(&end, 1, 20000) == 1;
    ::close(handle);
    return ended;
}

struct LinkDownloadsTest : test::EventLoopTest {
    test::TempFolder folder;
    QtMainLoop loop;
    MemoryDefaults defaults;
    SettingsStore settings{defaults};
    PlayerMessage message{loop};
    std::optional<QtChildProcesses> children{std::in_place};
    LinkDownloads links{&*children, message, settings, loop};
    fs::path pulls = folder / "100% $HOME \xc3\xbc";
    std::vector<std::pair<fs::path, std::string>> got;

    LinkDownloadsTest() {
        qputenv("no_proxy", "127.0.0.1");  // the server is ours
        settings.change([&](AppSettings& s) { s.pullsFolder = pulls.string(); });
        links.arrived = [this](const auto& file, const auto& link) { got.emplace_back(file, link); };
    }
    // A program in the tool's place; it finds the folder in $6 up to the last slash.
    void standIn(const std::string& script) {
        const fs::path tool = folder / "tool";
        std::ofstream(tool) << "#!/bin/sh\ndir=$(dirname \"$7\")\n" << script << "\n";
        fs::permissions(tool, fs::perms::owner_all);
        settings.change([&](AppSettings& s) { s.ytDlpPath = tool.string(); });
    }
    void fetch(const std::string& link) {
        links.open(link);
        EXPECT_TRUE(until([&] { return links.running() == 0; }));
    }
    std::string said() { return message.text().value_or(""); }
};

TEST_F(LinkDownloadsTest, FetchesWithTheRealTool) {
    test::writeAudio(folder / "rain.flac", test::noisePlanes(2, 24000), {.kind = test::FileKind::flac});
    test::writeAudio(folder / "a; $(touch x) <b>.wav", test::noisePlanes(1, 4800));
    std::ofstream(folder / "page.html") << "<html><title>../../Über %(id)s $HOME</title><body><audio src=\"rain.flac\">"
                                           "</audio></body></html>";
    FileServer server(folder / "");
    ASSERT_TRUE(LinkLoader::ytDlp("")) << "the package yt-dlp";
    for (const char* name : {"rain.flac", "moved/rain.flac", "a;%20$(touch%20x)%20%3Cb%3E.wav", "page.html"}) {
        got.clear();
        fetch(server.address(name));
        ASSERT_EQ(got.size(), 1U) << name << ": " << said();
        EXPECT_EQ(got[0].first.parent_path(), fs::canonical(pulls / "Links")) << got[0].first;
        EXPECT_EQ(got[0].first.extension(), ".wav");
        EXPECT_GT(AudioFileInfo::load(got[0].first).frames, 0);
        EXPECT_EQ(got[0].second, server.address(name));
        EXPECT_EQ(said(), "");
    }
    fetch(server.address("none.wav"));
    EXPECT_THAT(said(), HasSubstr("ERROR"));
    EXPECT_THAT(said(), HasSubstr("404"));
}

TEST_F(LinkDownloadsTest, TakesNoFileFromOutsideItsFolder) {
    std::ofstream(folder / "elsewhere.wav") << "x";
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"echo x >\"$dir/in.wav\"; echo \"$dir/in.wav\"", ""},
        {"echo " + (folder / "elsewhere.wav").string(), "isn't in the Links folder"},
        {"echo \"$dir/../../elsewhere.wav\"", "isn't in the Links folder"},
        {"ln -s " + (folder / "elsewhere.wav").string() + " \"$dir/link.wav\"; echo \"$dir/link.wav\"",
         "isn't in the Links folder"},
        {"mkdir \"$dir/d\"; echo \"$dir/d\"", "isn't in the Links folder"},
        {"echo /gone.wav", "isn't in the Links folder"},
        {"echo 'ERROR: refused' >&2; exit 3", "ERROR: refused"},
        {"kill -9 $$", "yt-dlp failed"},
    };
    for (const auto& [script, problem] : cases) {
        got.clear();
        standIn(script);
        fetch("http://a.example/b");
        EXPECT_EQ(got.size(), problem.empty() ? 1U : 0U) << script;
        EXPECT_THAT(said(), HasSubstr(problem)) << script;
    }
    fetch("ftp://a.example");
    EXPECT_EQ(said(), "Copy a link first");
    std::ofstream(folder / "file") << "x";
    settings.change([&](AppSettings& s) { s.pullsFolder = (folder / "file").string(); });
    fetch("http://a.example/b");
    EXPECT_THAT(said(), HasSubstr("Not a directory"));
}

TEST_F(LinkDownloadsTest, ReadsAllThatIsPrintedAndEndsWithItsChildren) {
    // More than both pipes hold, in turns.
    standIn(
        "for i in $(seq 64); do head -c 65536 /dev/zero | tr '\\0' e >&2; head -c 65536 /dev/zero | tr '\\0' o; done\n"
        "echo; echo x >\"$dir/in.wav\"; echo \"$dir/in.wav\"");
    fetch("http://a.example/b");
    EXPECT_EQ(got.size(), 1U) << said();

    // Deaf to the request to end: quitting in mid-download ends them all the same, at once.
    standIn("trap '' TERM; echo $$ >>\"" + (folder / "pids").string() + "\"; sleep 600 & echo $! >>\"" +
            (folder / "pids").string() + "\"; exec >&-; wait");
    links.open("http://a.example/b");
    links.open("http://a.example/c");
    EXPECT_EQ(links.running(), 2U);
    EXPECT_THAT(said(), StartsWith("Downloading audio from a.example…"));
    std::vector<int> pids;
    ASSERT_TRUE(until([&] {
        pids.clear();
        std::ifstream list(folder / "pids");
        for (int pid = 0; list >> pid;) { pids.push_back(pid); }
        return pids.size() == 4;
    }));
    links.cancel();
    EXPECT_EQ(links.running(), 0U);
    EXPECT_EQ(said(), "");
    children.reset();
    for (const int pid : pids) { EXPECT_TRUE(ends(pid)) << pid; }
}

}  // namespace
}  // namespace brindlehum
