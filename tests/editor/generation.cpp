// A generation against a service of our own, over the real network of this machine: every step and every way to fail.
#include <gmock/gmock.h>
#include <sys/resource.h>

#include <fstream>

#include "audio/decode/audio_file.h"
#include "editor/generation/ai_generator.h"
#include "platform/qt_http_client.h"
#include "support/audio_files.h"
#include "support/event_loop_test.h"
#include "support/full_disk.h"
#include "support/platform/http_server.h"
#include "support/platform/manual_main_loop.h"
#include "support/platform/scripted_session.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;
using test::httpReply;
using test::HttpReply;
using test::HttpServer;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using Kind = GenerationKind;

// Counts the exchanges under way, so that the clock moves only while nothing is.
class CountedHttp : public HttpClient {
public:
    std::unique_ptr<Exchange> send(HttpRequest request, std::function<void(HttpAnswer)> done) override {
        struct Counted : Exchange {
            explicit Counted(int& count) : count_(count) { ++count_; }
            ~Counted() override { --count_; }
            int& count_;
            std::unique_ptr<Exchange> inner;
        };
        auto counted = std::make_unique<Counted>(underWay);
        counted->inner = http_.send(std::move(request), std::move(done));
        return counted;
    }
    int underWay = 0;

private:
    QtHttpClient http_;
};

class GeneratorTest : public test::EventLoopTest {
protected:
    static constexpr const char* secret = "s3cr3t-k3y";
    ManualMainLoop loop_;
    test::TempFolder folder_;
    FileDefaults defaults_{folder_ / "defaults.json"};
    SettingsStore settings_{defaults_};
    ScriptedSecrets keyring_;
    GenerationKey key_{&keyring_, settings_};
    CountedHttp http_;
    HttpServer service_;
    HttpServer takes_;                         // another server
    std::map<std::string, HttpReply> script_;  // by request, in place of what a healthy service says
    std::vector<std::string> statuses_;
    std::unique_ptr<AIGenerator> generator_ = std::make_unique<AIGenerator>(
        &http_, key_, settings_, loop_, std::make_shared<SerialQueue>("Brindlehum.tempedits"));

    void SetUp() override {
        test::writeAudio(folder_ / "take", test::noisePlanes(2, 20 * 8000),
                         {.kind = test::FileKind::flac, .rate = 8000});
        settings_.change([this](AppSettings& s) { s.generationAddress = service_.address() + "v1"; });
        key_.set(generator_->service()->origin, SecretText(secret));
        const auto say = [this](const HttpServer::Request& request, const std::string& healthy) {
            const auto found = script_.find(request.line);
            return found == script_.end() ? httpReply(200, healthy) : found->second;
        };
        service_.answer = [this, say](const HttpServer::Request& request) {
            if (request.line == "POST /v1/ai/clip") { return say(request, R"({"url":"clip:7"})"); }
            if (request.line == "POST /v1/ai/generate") {
                return say(request, R"({"taskId":"t 1","used":3,"allowance":20})");
            }
            const std::string url = R"({"url":")" + takes_.address();
            return say(request, R"({"status":"done","tracks":[)" + url + "1\"}," + url + "2\"}]}");
        };
        takes_.answer = [this, say](const HttpServer::Request& request) {
            return say(request, test::readBytes(folder_ / "take"));
        };
        QObject::connect(generator_.get(), &AIGenerator::changed,
                         [this] { statuses_.push_back(generator_->status().value_or("")); });
    }
    GenerationSource source() const {
        return {folder_ / "Rain.wav",
                Sound(test::noisePlanes(2, 70 * 8000)),
                8000,
                120,
                4,
                "F#m",
                10 * 8000,
                40 * 8000,
                65 * 8000};
    }
    // Runs the job to its end, or until `done` holds; the clock moves while it waits for the service's work.
    bool run(const std::function<bool()>& done = {}, double step = 1) {
        return loop_.runUntil([&] {
            QCoreApplication::processEvents();
            if (!generator_ || !generator_->running() || (done && done())) { return true; }
            const bool waits = http_.underWay == 0 && generator_->status()->starts_with("Generating");
            if (waits) { loop_.advance(step); }
            return false;
        });
    }
    std::string generate(Kind kind) {
        generator_->generate(kind, source());
        EXPECT_TRUE(run());
        return generator_->status().value_or("");
    }
    std::vector<std::string> names() const {
        std::vector<std::string> out;
        for (const auto& each : generator_->results()) { out.push_back(each.filename().string()); }
        return out;
    }
    std::vector<std::string> asked() const {
        std::vector<std::string> out;
        for (const auto& each : service_.requests) { out.push_back(each.line); }
        return out;
    }
    void clear() {
        script_.clear();
        service_.requests.clear();
        takes_.requests.clear();
        statuses_.clear();
        fs::remove_all(folder_ / "Rain Edits");
    }
};

TEST_F(GeneratorTest, SendsWhatItsKindNeedsAndWritesTheTakes) {
    const std::string piece = R"(,"name":"Rain","bpm":120.0,"key":"F#m",)";
    const std::string poll = "GET /v1/ai/generate?taskId=t%201";
    struct Case {
        Kind kind;
        double clip;  // seconds
        std::string body;
        size_t files;
    };
    for (const auto& [kind, clip, body, files] : std::vector<Case>{
             {Kind::intro, 0, R"({"kind":"intro")" + piece + R"("bars":4,"durationSec":8.0})", 4},
             {Kind::ending, 60,
              R"({"kind":"ending")" + piece + R"("clipUrl":"clip:7","durationSec":60.0,"endStyle":"cadential"})", 4},
             {Kind::variation, 30, R"({"kind":"variation")" + piece + R"("clipUrl":"clip:7","durationSec":30.0})",
              2}}) {
        SCOPED_TRACE(rawValue(kind));
        clear();
        EXPECT_EQ(generate(kind), std::to_string(files) + " files written");
        std::vector<std::string> expected = {"POST /v1/ai/generate", poll};
        if (clip > 0) { expected.insert(expected.begin(), "POST /v1/ai/clip"); }
        ASSERT_EQ(asked(), expected);
        for (const auto& request : service_.requests) {
            EXPECT_EQ(request.headers.at("authorization"), std::string("Bearer ") + secret);
        }
        if (clip > 0) {
            EXPECT_EQ(service_.requests[0].headers.at("content-type"), "audio/mp4");
            test::writeBytes(folder_ / "clip", service_.requests[0].body);
            EXPECT_EQ(AudioFile::open(folder_ / "clip")->facts().frames, int64_t(clip * 8000));
        }
        const auto& start = service_.requests[clip > 0 ? 1 : 0];
        EXPECT_EQ(start.headers.at("content-type"), "application/json");
        EXPECT_EQ(start.body, body);
        EXPECT_EQ(generator_->usage(), "3 of 20 generations used this month");
        EXPECT_EQ(names().size(), files);
        EXPECT_EQ(names()[0], std::string("Rain - ") + title(kind) + " 1 (full take).wav");
        EXPECT_EQ(statuses_.front(), "Preparing…");
        EXPECT_THAT(statuses_, testing::IsSupersetOf({"Generating… 0s", "Generating… 7s", "Downloading takes…"}));
    }
    EXPECT_EQ(generate(Kind::variation), "2 files written");
    EXPECT_EQ(names()[0], "Rain - AI Variation 3 (full take).wav") << "the first job's takes stay";
    settings_.change([](AppSettings& s) { s.generationSendsName = false; });
    generate(Kind::intro);
    for (const auto& request : service_.requests) {
        if (&request >= &service_.requests[service_.requests.size() - 2]) {
            EXPECT_THAT(request.all, Not(HasSubstr("Rain")));
        }
    }
    settings_.change([](AppSettings& s) { s.generationAddress = ""; });
    generator_->generate(Kind::intro, source());
    EXPECT_FALSE(generator_->running()) << "without an address it is off";
}

TEST_F(GeneratorTest, EveryFailureEndsInOneLine) {
    const std::string clip = "POST /v1/ai/clip";
    const std::string start = "POST /v1/ai/generate";
    const std::string poll = "GET /v1/ai/generate?taskId=t%201";
    const std::string take = "GET /1";
    const std::string second = "GET /2";
    HttpServer other;
    other.answer = [](const auto&) { return httpReply(200, "{}"); };
    const std::string host = service_.address().substr(7, service_.address().size() - 8);
    const std::string stated = "HTTP/1.1 200 OK\r\nContent-Length: 10737418240\r\n\r\n{";
    const std::string streamed = "HTTP/1.1 200 OK\r\n\r\n{";
    const std::string silence(std::string(R"({"status":"done","tracks":[{"url":")") + "http://192.0.2.1/a\"}]}");
    using Then = HttpReply::Then;
    struct Case {
        std::string request;
        HttpReply reply;
        std::string status;
        size_t files = 0;  // that stay
        double wait = 0;   // seconds that the service keeps us waiting
    };
    const std::vector<Case> cases = {
        {clip, httpReply(401, R"({"error":"<b>No\u0000\nkey s3cr3t-k3y</b>"})"), "<b>No key ***</b>"},
        {clip, httpReply(302, "", "Location: " + other.address() + "\r\n"), "Generation service error"},
        {clip, httpReply(307, "", "Location: /v1/ai/clip2\r\n"), "Generation service error"},
        {clip, {"HTTP/1.1 200 OK\r\nContent-Length: 100\r\n\r\n{\"ur"}, host + ": Connection closed"},
        {clip, {stated, Then::hang}, host + ": The answer is larger than 1 MB"},
        {clip, {streamed, Then::flood}, host + ": The answer is larger than 1 MB"},
        {clip, {"", Then::hang}, host + ": no answer within 60 seconds", 0, 60},
        {start, httpReply(500, "no"), "Generation service error"},
        {start, httpReply(200, "<html>"), "The service didn't start a task"},
        {start, httpReply(200, ""), "The service didn't start a task"},
        {start, httpReply(200, std::string(5000, '[')), "The service didn't start a task"},
        {start, {"", Then::reset}, host + ": The connection broke off"},
        {poll, httpReply(200, R"({"status":"failed","error":"Too loud"})"), "Too loud"},
        {poll, httpReply(503, R"({"error":"Later"})"), "Later"},
        {poll, httpReply(200, R"({"status":"done","tracks":[]})"),
         "Still generating after 8 minutes. Try again shortly."},
        {poll, {"", Then::reset}, host + ": Connection closed"},
        {poll, httpReply(200, silence), "The service gives an address for a take that isn't safe"},
        {take, httpReply(200, "<html>"), "Take 1 can't be read: "},
        {take, httpReply(404, "no"), "A take can't be fetched: "},
        {take, {"HTTP/1.1 200 OK\r\nContent-Length: 209715201\r\n\r\n", Then::hang}, "A take of "},
        {take, {"HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\nx"}, "A take of "},
        {take, httpReply(302, "", "Location: http://192.0.2.1/\r\n"), "A take of "},
        {take, httpReply(302, "", "Location: " + takes_.address() + "1\r\n"), "A take can't be fetched: "},
        {take, {"HTTP/1.1 200 OK\r\n\r\nx", Then::hang}, "127.0.0.1", 0, 60},
        {second, httpReply(404, "no"), "A take can't be fetched: ", 2},
    };
    for (const auto& [request, reply, status, files, wait] : cases) {
        SCOPED_TRACE(request + " " + reply.bytes.substr(0, 100));
        clear();
        script_[request] = reply;
        generator_->generate(request == clip ? Kind::variation : Kind::intro, source());
        if (wait > 0) {
            auto& server = request.starts_with("GET") ? takes_ : service_;
            ASSERT_TRUE(run([&] { return !server.requests.empty(); }));
            loop_.advance(wait - 0.5);
            EXPECT_TRUE(generator_->running());
            loop_.advance(wait + 0.5);  // a byte of a take that has come meanwhile began the wait anew
        }
        ASSERT_TRUE(run());
        EXPECT_TRUE(generator_->isProblem());
        EXPECT_THAT(*generator_->status(), testing::StartsWith(status));
        EXPECT_THAT(*generator_->status(), Not(HasSubstr(secret)));
        size_t there = 0;
        for (const auto& each : fs::recursive_directory_iterator(folder_.path())) {
            there += each.path().extension() == ".wav" ? 1 : 0;
        }
        EXPECT_EQ(there, files);
        EXPECT_LE(std::ranges::count(asked(), start), 1) << "a start is never sent twice";
    }
    EXPECT_TRUE(other.requests.empty());
    EXPECT_LT(service_.flooded, 32 << 20);
}

TEST_F(GeneratorTest, ACertificateThatDoesntHoldEndsTheJob) {
    HttpServer secure;
    secure.answer = service_.answer;
    secure.isSecure = true;
    const std::string host = "127.0.0.1:" + std::to_string(secure.serverPort());
    settings_.change([&](AppSettings& s) { s.generationAddress = "https://" + host + "/v1"; });
    EXPECT_THAT(generate(Kind::intro), testing::StartsWith(host + ": SSL handshake failed"));
    EXPECT_TRUE(secure.requests.empty());
}

TEST_F(GeneratorTest, ALostAnswerIsForgivenOnceWhileTheServiceWorks) {
    const std::string poll = "GET /v1/ai/generate?taskId=t%201";
    for (const bool hangs : {false, true}) {
        clear();
        script_[poll] = {"", hangs ? HttpReply::Then::hang : HttpReply::Then::reset};
        generator_->generate(Kind::intro, source());
        ASSERT_TRUE(run([&] { return service_.requests.size() >= 2; }));
        if (hangs) { loop_.advance(60); }
        ASSERT_TRUE(run([&] { return http_.underWay == 0; }));
        script_.clear();
        ASSERT_TRUE(run());
        EXPECT_EQ(*generator_->status(), "4 files written") << hangs;
    }
}

TEST_F(GeneratorTest, CancelAndQuitWorkAtEachStep) {
    const std::vector<std::string> steps = {"POST /v1/ai/clip", "POST /v1/ai/generate",
                                            "GET /v1/ai/generate?taskId=t%201", "GET /1", "GET /2"};
    const auto requests = [this] { return service_.requests.size() + takes_.requests.size(); };
    for (size_t step = 0; step < steps.size(); ++step) {
        clear();
        script_[steps[step]] = {"", HttpReply::Then::hang};
        generator_->generate(Kind::ending, source());
        ASSERT_TRUE(run([&] { return requests() == step + 1; }));
        ASSERT_TRUE(generator_->running());
        generator_->generate(Kind::intro, source());
        generator_->cancel();
        EXPECT_EQ(*generator_->status(), step < 4 ? "Cancelled" : "Cancelled; 2 files written");
        EXPECT_FALSE(generator_->running() || generator_->isProblem());
        EXPECT_EQ(http_.underWay, 0);
        loop_.advance(700);
        QCoreApplication::processEvents();
        EXPECT_EQ(requests(), step + 1) << "one job at a time, and none after the cancel";
    }
    clear();
    generator_->generate(Kind::ending, source());
    generator_->cancel();  // while it encodes
    generator_->encoder().drain();
    loop_.drain();
    EXPECT_EQ(requests(), 0U);
    script_[steps[1]] = {"", HttpReply::Then::hang};
    generator_->generate(Kind::ending, source());
    ASSERT_TRUE(run([&] { return requests() == 2; }));
    generator_->finish(20);
    generator_.reset();
    EXPECT_EQ(http_.underWay, 0);
}

TEST_F(GeneratorTest, AFullDiskKeepsTheTakesBefore) {
    generator_->generate(Kind::variation, source());
    ASSERT_TRUE(run([&] { return generator_->results().size() == 1; }));
    const test::FullDisk full(int64_t(fs::file_size(folder_ / "take")) + 1000);
    ASSERT_TRUE(run());
    EXPECT_THAT(*generator_->status(), HasSubstr("File too large"));
    EXPECT_THAT(names(), ElementsAre("Rain - AI Variation 1 (full take).wav"));
    for (const auto& each : fs::directory_iterator(folder_ / "Rain Edits")) {
        EXPECT_THAT(each.path().string(), Not(EndsWith(".bh-tmp")));
    }
}

TEST_F(GeneratorTest, TheKeyStaysBetweenTheKeyringAndItsOwnServer) {
    const auto holdsKey = [](const std::string& bytes) { return bytes.find(secret) != std::string::npos; };
    generate(Kind::ending);
    ASSERT_TRUE(defaults_.flush(20));
    for (const auto& each : fs::recursive_directory_iterator(folder_.path())) {
        if (each.is_regular_file()) { EXPECT_FALSE(holdsKey(test::readBytes(each.path()))) << each.path(); }
    }
    for (const char* each : {"/proc/self/cmdline", "/proc/self/environ"}) {
        std::ifstream file(each);
        EXPECT_FALSE(holdsKey({std::istreambuf_iterator<char>(file), {}})) << each;
    }
    ASSERT_EQ(takes_.requests.size(), 2U);
    for (const auto& each : takes_.requests) {
        EXPECT_FALSE(holdsKey(each.all));
        EXPECT_EQ(each.headers.count("cookie") + each.headers.count("referer"), 0U);
    }
    for (const auto& each : statuses_) { EXPECT_FALSE(holdsKey(each)); }
    // Another server at the same path gets none.
    clear();
    HttpServer other;
    other.answer = service_.answer;
    settings_.change([&](AppSettings& s) { s.generationAddress = other.address() + "v1"; });
    EXPECT_EQ(generate(Kind::ending), "4 files written");
    ASSERT_EQ(other.requests.size(), 3U);
    for (const auto& each : other.requests) { EXPECT_EQ(each.headers.count("authorization"), 0U); }
}

TEST_F(GeneratorTest, WithoutAKeyringAKeyLivesForThisRun) {
    using Place = GenerationKey::Place;
    const std::string origin = generator_->service()->origin;
    EXPECT_EQ(key_.place(origin), Place::keyring);
    rlimit dumps{};
    getrlimit(RLIMIT_CORE, &dumps);
    EXPECT_LE(dumps.rlim_cur, 1U) << "a process that has held a key leaves no core dump";
    EXPECT_EQ(keyring_.kept.size(), 1U);
    keyring_.locked = true;
    EXPECT_EQ(generate(Kind::intro), "The keyring can't be read: It is locked");
    EXPECT_TRUE(service_.requests.empty());
    key_.set(origin, SecretText("other"));
    EXPECT_EQ(key_.place(origin), Place::thisRun);
    EXPECT_EQ(key_.problem(), "It is locked");
    EXPECT_EQ(generate(Kind::intro), "4 files written");
    EXPECT_EQ(service_.requests.at(0).headers.at("authorization"), "Bearer other");
    keyring_.locked = false;
    key_.forget(origin);
    EXPECT_EQ(key_.place(origin), Place::none);
    EXPECT_TRUE(keyring_.kept.empty());
    GenerationKey without(nullptr, settings_);
    without.set(origin, SecretText(secret));
    EXPECT_EQ(without.place(origin), Place::thisRun);
    key_.set(origin, SecretText(secret));
    keyring_.kept.clear();
    EXPECT_EQ(generate(Kind::intro), "The service's key isn't in the keyring: enter it in Settings");
}

TEST(WebAddress, IsHttpsOrOnThisMachine) {
    for (const auto& [text, url, origin] : std::vector<std::array<const char*, 3>>{
             {"https://A.example", "https://a.example/", "https://a.example:443"},
             {" https://a.example:8443/v1 ", "https://a.example:8443/v1/", "https://a.example:8443"},
             {"http://127.0.0.1:80/x/", "http://127.0.0.1:80/x/", "http://127.0.0.1:80"},
             {"http://[::1]:8081", "http://[::1]:8081/", "http://[::1]:8081"},
             {"http://localhost", "http://localhost/", "http://localhost:80"}}) {
        const auto address = baseAddress(text);
        ASSERT_TRUE(address) << text;
        EXPECT_EQ(address->url, url);
        EXPECT_EQ(address->origin, origin);
    }
    for (const char* each : {"", "a.example", "http://a.example", "http://127.0.0.1.example", "https://u:p@a.example",
                             "https://a.example/?x", "https://a.example/#x", "ftp://a.example", "file:///etc/passwd",
                             "https://", "https://a b"}) {
        EXPECT_FALSE(baseAddress(each)) << each;
    }
    const auto far = *webAddress("https://a.example/x");
    for (const char* each : {"http://a.example/x", "https://localhost/", "http://127.0.0.1/", "", "file:///x"}) {
        EXPECT_FALSE(redirected(far, each)) << each;
    }
    EXPECT_EQ(redirected(far, "/y")->url, "https://a.example/y");
    EXPECT_EQ(redirected(far, "//b.example/y")->url, "https://b.example/y");
}

}  // namespace
}  // namespace brindlehum
