// The control port over real sockets: who is served, how heads are put together, and that nobody starves the rest.
#include <gmock/gmock.h>

#include <QTcpSocket>
#include <memory>
#include <vector>

#include <nlohmann/json.hpp>

#include "app/control_server.h"
#include "support/event_loop_test.h"

namespace brindlehum {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class ControlPort : public test::EventLoopTest {
protected:
    ControlServer server_;
    std::vector<std::pair<std::string, ControlParams>> asked_;

    void SetUp() override {
        server_.handler = [this](const std::string& command, const ControlParams& params) -> json {
            asked_.emplace_back(command, params);
            if (command == "fail") { return {{"error", "unknown command fail"}}; }
            return {{"ok", true}};
        };
        server_.start(0);
        ASSERT_TRUE(server_.isListening());
    }

    std::unique_ptr<QTcpSocket> connected() {
        auto socket = std::make_unique<QTcpSocket>();
        socket->connectToHost("127.0.0.1", server_.listeningPort());
        EXPECT_TRUE(until([&] { return socket->state() == QAbstractSocket::ConnectedState; }));
        return socket;
    }
    // Everything received until the server ends the connection.
    static std::string answer(QTcpSocket& socket) {
        EXPECT_TRUE(until([&] { return socket.state() == QAbstractSocket::UnconnectedState; }));
        return socket.readAll().toStdString();
    }
    // The answer to `bytes` sent in one write.
    std::string ask(const std::string& bytes) {
        auto socket = connected();
        socket->write(bytes.data(), qint64(bytes.size()));
        return answer(*socket);
    }
    static std::string get(const std::string& target, const std::string& headers = "X-Brindlehum: 1\r\n") {
        return "GET " + target + " HTTP/1.1\r\nHost: localhost\r\n" + headers + "\r\n";
    }
};

// `more` are further header lines.
std::string response(const char* status, const std::string& body, const std::string& more = "") {
    const std::string type = body.empty() ? "" : "Content-Type: application/json\r\n";
    return std::string("HTTP/1.1 ") + status + "\r\n" + more + type + "Content-Length: " + std::to_string(body.size()) +
           "\r\nConnection: close\r\n\r\n" + body;
}

const std::string served = response("200 OK", "{\"ok\":true}");
const std::string refusal = "{\"error\":\"forbidden\"}";
const std::string forbidden = response("403 Forbidden", refusal);

TEST_F(ControlPort, OnlyToolsAndLocalPagesAreServed) {
    const std::string port = std::to_string(server_.listeningPort());
    const auto access = [](const std::string& origin) {
        return "Access-Control-Allow-Origin: " + origin +
               "\r\nAccess-Control-Allow-Headers: X-Brindlehum\r\nAccess-Control-Allow-Methods: GET\r\n";
    };
    const struct {
        const char* what;
        std::string request, response;
    } cases[] = {
        {"a tool", get("/status"),
         "HTTP/1.1 200 OK\r\nContent-Type: application/json\r\nContent-Length: 11\r\nConnection: close\r\n\r\n"
         "{\"ok\":true}"},
        {"another method with a body", "POST /toggle HTTP/1.1\r\nX-Brindlehum: 1\r\nContent-Length: 4\r\n\r\nbody",
         served},
        {"no header", get("/status", ""), forbidden},
        {"another value", get("/status", "X-Brindlehum: 01\r\n"), forbidden},
        {"a local web server", get("/status", "X-Brindlehum: 1\r\nOrigin: http://localhost:3000\r\n"), forbidden},
        {"an origin that would add a header", get("/status", "X-Brindlehum: 1\r\nOrigin: file\nA: b\r\n"), forbidden},
        {"a foreign name that leads to this machine",
         get("/status", "X-Brindlehum: 1\r\nHost: evil.example:" + port + "\r\n"), forbidden},
        {"another port", get("/status", "X-Brindlehum: 1\r\nHost: localhost:1\r\n"), forbidden},
        {"this machine by name", get("/status", "X-Brindlehum: 1\r\nHost: LOCALHOST:" + port + "\r\n"), served},
        {"this machine by number", get("/status", "X-Brindlehum: 1\r\nHost: 127.0.0.1:" + port + "\r\n"), served},
        {"this machine by its longer number", get("/status", "X-Brindlehum: 1\r\nHost: [::1]:" + port + "\r\n"),
         served},
        {"a site's own storage", get("/status", "X-Brindlehum: 1\r\nOrigin: filesystem:http://evil.example\r\n"),
         forbidden},
        {"any page may read", get("/status", "X-Brindlehum: 1\r\nOrigin: null\r\n"),
         response("200 OK", "{\"ok\":true}", access("null"))},
        {"but change nothing", get("/toggle", "X-Brindlehum: 1\r\nOrigin: null\r\n"),
         response("403 Forbidden", refusal, access("null"))},
        {"a page from a file may", get("/toggle", "X-Brindlehum: 1\r\nOrigin: file://\r\n"),
         response("200 OK", "{\"ok\":true}", access("file://"))},
        {"a page from a file", get("/status", "X-Brindlehum: 1\r\nOrigin: file://\r\n"),
         response("200 OK", "{\"ok\":true}", access("file://"))},
        {"a page from a file without the header", get("/status", "Origin: null\r\n"),
         response("403 Forbidden", refusal, access("null"))},
        {"a page asking first", "OPTIONS /status HTTP/1.1\r\nOrigin: null\r\n\r\n",
         response("204 No Content", "", access("null"))},
        {"a site asking first", "OPTIONS * HTTP/1.1\r\nOrigin: https://example.com\r\n\r\n",
         response("403 Forbidden", "")},
        {"a command that fails", get("/fail"), response("400 Bad Request", "{\"error\":\"unknown command fail\"}")},
    };
    for (const auto& c : cases) { EXPECT_EQ(ask(c.request), c.response) << c.what; }
}

TEST_F(ControlPort, ThePathIsTheCommandAndTheQueryItsArguments) {
    const struct {
        const char *target, *command;
        ControlParams params;
    } cases[] = {
        {"//status", "status", {}},
        {"/", "", {}},
        {"/profile?name=Room%209.1.6&b=%26%3D%2B", "profile", {{"name", "Room 9.1.6"}, {"b", "&=+"}}},
        {"/profile?name=a+b", "profile", {{"name", "a+b"}}},
        {"/p?a=1&a=2&b=c=d", "p", {{"a", "2"}, {"b", "c=d"}}},
        {":99999/status", "", {}},
    };
    for (const auto& c : cases) {
        asked_.clear();
        ask(get(c.target));
        ASSERT_EQ(asked_.size(), 1U) << c.target;
        EXPECT_EQ(asked_[0].first, c.command) << c.target;
        EXPECT_EQ(asked_[0].second, c.params) << c.target;
    }
}

TEST_F(ControlPort, BytesAfterARequestAreIgnored) {
    EXPECT_EQ(ask(get("/first") + get("/second")), served);
    EXPECT_EQ(asked_, (std::vector<std::pair<std::string, ControlParams>>{{"first", {}}}));
    // One that never ends is cut off.
    auto socket = connected();
    const std::string endless = get("/first") + std::string(64 << 20, 'x');
    qint64 written = 0;
    QObject::connect(socket.get(), &QTcpSocket::bytesWritten, [&written](qint64 count) { written += count; });
    socket->write(endless.data(), qint64(endless.size()));
    EXPECT_TRUE(until([&] { return socket->state() == QAbstractSocket::UnconnectedState; }));
    EXPECT_LT(written, qint64(endless.size()));
}

TEST_F(ControlPort, AnOversizedHeadIsDroppedWithoutAResponse) {
    const std::string start = "GET /status HTTP/1.1\r\nX-Brindlehum: 1\r\nX-Long: ";
    EXPECT_EQ(ask(start + std::string(ControlProtocol::maxHead, 'x')), "");
    EXPECT_TRUE(asked_.empty());
}

TEST_F(ControlPort, CommandsAndAnswersAreRepairedUTF8AndValuesAreBytes) {
    EXPECT_EQ(ask(get("/%FF?path=/caf%E9.wav")), served);
    EXPECT_EQ(asked_[0].first, "\xEF\xBF\xBD");
    EXPECT_EQ(asked_[0].second.at("path"), "/caf\xE9.wav");

    server_.handler = [](const auto&, const auto&) -> json { return {{"file", "a\xFF"}}; };
    EXPECT_THAT(ask(get("/status")), HasSubstr("{\"file\":\"a\xEF\xBF\xBD\"}")) << "file names needn't be UTF-8";
    server_.handler = nullptr;
    EXPECT_EQ(ask(get("/status")), response("400 Bad Request", "{\"error\":\"not ready\"}"));
}

TEST_F(ControlPort, SilentClientsDontBlockOthers) {
    std::vector<std::unique_ptr<QTcpSocket>> silent;
    for (int i = 0; i < 100; ++i) { silent.push_back(connected()); }
    for (int i = 0; i < 100; i += 2) { silent[size_t(i)]->write("GET /sta"); }
    EXPECT_EQ(ask(get("/status")), served);
    // They are still there: one of them may finish what it began.
    silent[2]->write("tus HTTP/1.1\r\nX-Brindlehum: 1\r\n\r\n");
    EXPECT_EQ(answer(*silent[2]), served);

    // Far more of them than are held: the oldest give way.
    while (silent.size() < 2 * ControlServer::maxConnections) { silent.push_back(connected()); }
    EXPECT_EQ(ask(get("/status")), served);
    EXPECT_TRUE(until([&] { return silent[0]->state() == QAbstractSocket::UnconnectedState; }));
    EXPECT_EQ(silent.back()->state(), QAbstractSocket::ConnectedState);
}

TEST_F(ControlPort, ListensOnLoopbackOnlyAndIgnoresATakenPort) {
    QTcpSocket other;
    other.connectToHost("127.0.0.2", server_.listeningPort());
    EXPECT_TRUE(until([&] { return other.error() == QAbstractSocket::ConnectionRefusedError; }));

    ControlServer second;
    second.start(server_.listeningPort());
    EXPECT_FALSE(second.isListening());
    EXPECT_THAT(second.problem(), HasSubstr("is taken by another program"));
}

}  // namespace
}  // namespace brindlehum
