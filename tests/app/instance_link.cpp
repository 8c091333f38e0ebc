// One instance a session: which start becomes it, and that every path arrives byte for byte.
#include <sys/wait.h>
#include <unistd.h>

#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <atomic>
#include <map>
#include <memory>
#include <thread>

#include "app/instance_link.h"
#include "support/audio_files.h"
#include "support/child.h"
#include "support/event_loop_test.h"

namespace brindlehum {
namespace {

using Files = std::vector<std::filesystem::path>;
using Outcome = InstanceLink::Outcome;

class Instance : public test::EventLoopTest {
protected:
    test::TempFolder folder_;
    InstanceLink first_{folder_.path()};
    std::vector<StartRequest> received_;

    void SetUp() override {
        first_.onRequest = [this](const StartRequest& request) { received_.push_back(request); };
    }
    // The outcome of a second start in another thread, while this one's event loop runs.
    Outcome secondStart(const StartRequest& request, double patience = 10) {
        std::atomic<int> outcome{-1};
        std::thread other([&] {
            InstanceLink link(folder_.path());
            outcome = int(link.start(request, patience));
            QMetaObject::invokeMethod(
                QCoreApplication::instance(), [] {}, Qt::QueuedConnection);
        });
        EXPECT_TRUE(until([&] { return outcome >= 0; }));
        other.join();
        return Outcome(outcome.load());
    }
};

TEST_F(Instance, HandsEveryPathOverByteForByte) {
    ASSERT_EQ(first_.start({}), Outcome::instance);
    const Files odd = {"/a b/c.wav", "/new\nline", "/latin-\xE9.wav", "/\xFF\xFE", "/é", "/--help"};
    const std::filesystem::path longer = "/some/folder/with a longer name";
    Files many;
    for (int i = 0; i < 20000; ++i) { many.push_back(longer / std::to_string(i)); }
    for (const StartRequest& request :
         {StartRequest{odd, {"Unknown option --x"}}, StartRequest{}, StartRequest{{}, {}, StartAim::stayQuiet},
          StartRequest{many, {}, StartAim::edit}}) {
        EXPECT_EQ(secondStart(request), Outcome::handedOver);
        ASSERT_FALSE(received_.empty());
        EXPECT_EQ(received_.back(), request);
    }
    EXPECT_EQ(received_.size(), 4U);
}

TEST_F(Instance, LockAndSocketOfACrashAreTakenOver) {
    // A process that takes lock and socket and ends without releasing them.
    ASSERT_TRUE(test::Child([&] {
                    auto* crashed = new InstanceLink(folder_.path());
                    return crashed->start({}) == Outcome::instance;
                }).succeeded());
    ASSERT_TRUE(std::filesystem::exists(folder_ / "brindlehum.lock"));
    ASSERT_TRUE(std::filesystem::exists(folder_ / "brindlehum.socket"));
    EXPECT_EQ(first_.start({}, 1), Outcome::instance);
    EXPECT_EQ(secondStart({{"/x.wav"}, {}}), Outcome::handedOver);
}

// No event loop in this process: each child makes its own.
class InstanceRace : public testing::Test {
protected:
    static constexpr int starts = 6;
    test::TempFolder folder_;

    // The life of one child; gives its exit status: the outcome of its start, or `failed`.
    static constexpr int failed = 9;
    int live(int number, int gate) {
        int argc = 1;
        char name[] = "child";
        char* argv[] = {name, nullptr};
        QCoreApplication application(argc, argv);
        char nothing = 0;
        if (::read(gate, &nothing, 1) != 0) { return failed; }
        InstanceLink link(folder_.path());
        int handed = 0;
        link.onRequest = [&handed](const StartRequest&) { ++handed; };
        const Outcome outcome = link.start({{std::filesystem::path("/file") / std::to_string(number)}, {}}, 20);
        const auto all = [&] { return handed == starts - 1; };
        return outcome != Outcome::instance || test::EventLoopTest::until(all) ? int(outcome) : failed;
    }
};

TEST_F(InstanceRace, ExactlyOneOfManyStartsBecomesTheInstance) {
    int gate[2];
    ASSERT_EQ(::pipe(gate), 0);
    std::vector<pid_t> children;
    for (int i = 0; i < starts; ++i) {
        const pid_t child = ::fork();
        if (child == 0) {
            // All wait for the pipe to close, so that they start at the same moment.
            ::close(gate[1]);
            ::_exit(live(i, gate[0]));
        }
        children.push_back(child);
    }
    ::close(gate[0]);
    ::close(gate[1]);
    std::map<int, int> ends;
    for (const pid_t child : children) {
        int status = -1;
        ::waitpid(child, &status, 0);
        ++ends[WIFEXITED(status) ? WEXITSTATUS(status) : failed];
    }
    EXPECT_EQ(ends, (std::map<int, int>{{int(Outcome::instance), 1}, {int(Outcome::handedOver), starts - 1}}));
}

TEST_F(Instance, WaitingForASilentInstanceEnds) {
    QLockFile held(QString::fromStdString((folder_ / "brindlehum.lock").string()));
    held.setStaleLockTime(0);
    ASSERT_TRUE(held.tryLock());
    EXPECT_EQ(first_.start({{"/x"}, {}}, 0.1), Outcome::unanswered) << "no socket";
    QLocalServer mute;
    ASSERT_TRUE(mute.listen(QString::fromStdString((folder_ / "brindlehum.socket").string())));
    EXPECT_EQ(first_.start({{"/x"}, {}}, 0.1), Outcome::unanswered) << "a socket that says nothing";
}

TEST_F(Instance, WithoutALockFolderEachStartIsAnInstance) {
    InstanceLink one(folder_ / "absent");
    InstanceLink two(folder_ / "absent");
    EXPECT_EQ(one.start({}), Outcome::instance);
    EXPECT_EQ(two.start({}), Outcome::instance);
}

TEST_F(Instance, UnfinishedMessagesAreBoundedInSizeAndNumber) {
    ASSERT_EQ(first_.start({}), Outcome::instance);
    const QString socket = QString::fromStdString((folder_ / "brindlehum.socket").string());
    std::vector<std::unique_ptr<QLocalSocket>> peers;
    const auto connect = [&] {
        peers.push_back(std::make_unique<QLocalSocket>());
        peers.back()->connectToServer(socket);
        return peers.back().get();
    };
    const auto isGone = [](const QLocalSocket* peer) { return peer->state() == QLocalSocket::UnconnectedState; };
    qint64 written = 0;
    QLocalSocket* endless = connect();
    QObject::connect(endless, &QLocalSocket::bytesWritten, [&written](qint64 count) { written += count; });
    endless->write(QByteArray(64 << 20, 'x'));
    EXPECT_TRUE(until([&] { return isGone(endless); }));
    EXPECT_LT(written, InstanceMessage::maxBytes + (4 << 20));
    QLocalSocket* oldest = connect();
    oldest->write("/half");
    while (peers.size() < InstanceLink::maxPeers + 4) { connect()->write("/half"); }
    EXPECT_TRUE(until([&] { return isGone(oldest); }));
    EXPECT_FALSE(isGone(peers.back().get()));
    EXPECT_EQ(secondStart({{"/x.wav"}, {}}), Outcome::handedOver) << "they block nobody";
}

TEST_F(Instance, ThePrivateFolderIsNeverSomebodyElsesNorTheCurrentOne) {
    const auto set = [](const char* name, const std::filesystem::path& value) {
        qputenv(name, QByteArray::fromStdString(value.native()));
    };
    const std::map<const char*, QByteArray> before = {{"XDG_RUNTIME_DIR", qgetenv("XDG_RUNTIME_DIR")},
                                                      {"TMPDIR", qgetenv("TMPDIR")},
                                                      {"XDG_CACHE_HOME", qgetenv("XDG_CACHE_HOME")}};
    qunsetenv("XDG_RUNTIME_DIR");
    set("TMPDIR", folder_.path());
    set("XDG_CACHE_HOME", folder_ / "cache");
    const auto own = folder_ / ("brindlehum-" + std::to_string(::getuid()));
    std::filesystem::create_directory(own);
    EXPECT_EQ(InstanceLink::runtimeFolder(), own);
    EXPECT_EQ(std::filesystem::status(own).permissions(), std::filesystem::perms::owner_all);
    std::filesystem::remove(own);
    std::filesystem::create_directory(folder_ / "theirs");
    std::filesystem::create_symlink(folder_ / "theirs", own);
    EXPECT_EQ(InstanceLink::runtimeFolder(), folder_ / "cache" / "brindlehum" / "run") << "a planted link";
    set("XDG_CACHE_HOME", "/proc");
    EXPECT_EQ(InstanceLink::runtimeFolder(), "");
    InstanceLink loose(InstanceLink::runtimeFolder());
    EXPECT_EQ(loose.start({}), Outcome::instance);
    EXPECT_FALSE(std::filesystem::exists("brindlehum.lock"));
    for (const auto& [name, value] : before) { value.isNull() ? qunsetenv(name) : qputenv(name, value); }
}

TEST_F(Instance, OnlyTheUserMayConnect) {
    ASSERT_EQ(first_.start({}), Outcome::instance);
    first_.release();
    ASSERT_EQ(first_.start({}, 1), Outcome::instance) << "released, so free for the next start";
    const auto permissions = std::filesystem::status(folder_ / "brindlehum.socket").permissions();
    EXPECT_EQ(permissions & std::filesystem::perms(077), std::filesystem::perms::none);
}

}  // namespace
}  // namespace brindlehum
