// The generation service's words, the trim of its takes, and the files that are made of them.
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
#include <numbers>

#include "base/memory_file.h"
#include "edits/generated_takes.h"
#include "edits/transition_trim.h"
#include "support/audio_files.h"
#include "support/refusal.h"

namespace brindlehum {
namespace {

namespace fs = std::filesystem;
namespace protocol = GenerationProtocol;
using testing::ElementsAre;
using testing::HasSubstr;

TEST(GenerationProtocol, AsksInTheServicesWords) {
    const protocol::Piece piece = {"Rain \xff \"1\"", 92.5, 2.5, "F#m"};
    const auto body = [&](GenerationKind kind, const std::optional<std::string>& url) {
        return protocol::startBody(kind, piece, 59.5, url);
    };
    const std::string common = "\"name\":\"Rain \xef\xbf\xbd \\\"1\\\"\",\"bpm\":92.5,\"key\":\"F#m\",";
    EXPECT_EQ(body(GenerationKind::intro, "u"), "{\"kind\":\"intro\"," + common + R"("bars":4,"durationSec":10.0})");
    EXPECT_EQ(body(GenerationKind::ending, "u"),
              "{\"kind\":\"ending\"," + common + R"("clipUrl":"u","durationSec":59.5,"endStyle":"cadential"})");
    EXPECT_EQ(body(GenerationKind::variation, {}), "{\"kind\":\"variation\"," + common + R"("durationSec":59.5})");
    EXPECT_EQ(protocol::pollPath("a-1_~.&x=/?\n"), "ai/generate?taskId=a-1_~.%26x%3D%2F%3F%0A");
}

TEST(GenerationProtocol, UnderstandsEveryAnswer) {
    using Kind = ErrorKind;
    const auto ask = [](int status, const std::string& body) { return protocol::answer(status, body); };
    const std::string deep(2000, '[');
    struct Failure {
        int status;
        std::string body;
        Kind kind;
        std::string text;
    };
    for (const auto& [status, body, kind, text] : std::vector<Failure>{
             {401, R"({"error":"No such\u0007 key\n\u202e here"})", Kind::generationService, "No such key here"},
             {500, R"({"error":5})", Kind::generationService, "Generation service error"},
             {302, "", Kind::generationService, "Generation service error"},
             {500, R"({"error":")" + std::string(301, 'x') + "\"}", Kind::generationService, std::string(300, 'x')},
             {200, "<html>", Kind::noGenerationTask, "The service didn't start a task"},
             {200, R"({"taskId":7})", Kind::noGenerationTask, "The service didn't start a task"},
             {200, R"({"taskId":"a","x":)" + deep + "}", Kind::noGenerationTask, "The service didn't start a task"},
             {200, R"({"taskId":"a","x":")" + std::string(1 << 20, 'x') + "\"}", Kind::noGenerationTask,
              "The service didn't start a task"}}) {
        const auto refusal = test::refusalOf([&] { protocol::taskId(ask(status, body)); });
        EXPECT_EQ(refusal.kind, kind) << body.substr(0, 80);
        EXPECT_EQ(refusal.text, text);
    }
    EXPECT_EQ(protocol::taskId(ask(200, R"({"taskId":"a [[[[ \" [","x":"[["})")), "a [[[[ \" [");
    EXPECT_EQ(protocol::usage(ask(200, R"({"used":3,"allowance":20})")), "3 of 20 generations used this month");
    for (const char* each : {R"({"used":3})", R"({"used":"3","allowance":20})", R"({"used":3.5,"allowance":20})"}) {
        EXPECT_EQ(protocol::usage(ask(200, each)), std::nullopt) << each;
    }
    for (const char* each : {R"({"status":"queued"})", R"({"status":"done"})", R"({"status":"done","tracks":[]})",
                             R"({"status":3,"tracks":[{"url":"u"}]})", "no"}) {
        EXPECT_EQ(protocol::takes(ask(200, each)), std::nullopt) << each;
    }
    EXPECT_THAT(*protocol::takes(ask(200, R"({"status":"done","tracks":[{"url":"a"},7,{"id":1},{"url":"b"}]})")),
                ElementsAre("a", "b"));
    for (const auto& [body, text] : std::vector<std::pair<std::string, std::string>>{
             {R"({"status":"failed","error":"Too quiet"})", "Too quiet"},
             {R"({"status":"failed"})", "Generation failed"},
             {R"({"status":"done","tracks":[{"id":1}]})", "The service says where none of its takes are"}}) {
        EXPECT_EQ(test::refusalOf([&] { protocol::takes(ask(200, body)); }).text, text);
    }
}

TEST(GenerationProtocol, AKeyCantBringAHeaderOfItsOwn) {
    const auto value = [](const char* header, const char* key) {
        return std::string(protocol::headerValue(header, SecretText(key)).view());
    };
    EXPECT_EQ(value("authorization", "k"), "Bearer k");
    EXPECT_EQ(value("Authorization", "Basic k"), "Basic k");
    EXPECT_EQ(value("X-Key", "k"), "k");
    for (const char* each : {"k\r\nHost: x", "k\n", "", "  ", "ké"}) { EXPECT_FALSE(protocol::isKey(each)) << each; }
    for (const char* each : {"X Key", "X:Key", "", "Host", "content-LENGTH", "Cookie", "X\r\n"}) {
        EXPECT_FALSE(protocol::isHeaderName(each)) << each;
    }
    EXPECT_TRUE(protocol::isHeaderName("X-Api-Key") && protocol::isKey("Bearer a+/=="));
}

TEST(TransitionTrim, FollowsItsFormula) {
    const auto take = test::noisePlanes(2, 1000);
    for (const bool intro : {true, false}) {
        for (const double length : {0.0, 1.0, 400.7, 1000.0, 5000.0}) {
            for (const double fade : {0.0, 1.0, 37.9, 1000.0, 9000.0}) {
                const int count = std::min(1000, int(length));
                const int faded = std::min(count, int(fade));
                const auto trimmed = transitionTrim(take, 1, intro, length, fade);
                for (size_t c = 0; c < 2; ++c) {
                    std::vector<float> expected;
                    for (int i = 0; i < count; ++i) {
                        const int into = intro ? i - (count - faded) : i;
                        const double at = double(into) / faded * std::numbers::pi / 2;
                        const bool isIn = intro ? into >= 0 : into < faded;
                        const float sample = take[c][size_t(intro ? i : 1000 - count + i)];
                        expected.push_back(isIn ? float(sample * (intro ? std::cos(at) : std::sin(at))) : sample);
                    }
                    ASSERT_EQ(trimmed[c], expected) << intro << " " << length << " " << fade;
                }
            }
        }
        EXPECT_TRUE(transitionTrim({}, 48000, intro, 5, 1).empty());
        EXPECT_EQ(transitionTrim({{}, {}}, 48000, intro, 5, 1).size(), 2U);
    }
}

struct GeneratedTakesTest : testing::Test {
    test::TempFolder folder;
    std::vector<fs::path> done;
    GeneratedTakes::Take take(GenerationKind kind, int number = 1) {
        return {kind, folder / "take", folder / "Rain.wav", folder / "Rain Edits", number, 0.5};
    }
    std::vector<std::string> names() {
        std::vector<std::string> out;
        for (const auto& each : done) { out.push_back(each.filename().string()); }
        return out;
    }
};

TEST_F(GeneratedTakesTest, AreWrittenFullAndTrimmedBesideWhatIsThere) {
    const auto planes = test::noisePlanes(2, 20 * 8000);
    test::writeAudio(folder / "take", planes, {.rate = 8000});
    fs::create_directories(folder / "Rain Edits");
    test::writeBytes(folder / "Rain Edits/Rain - AI Ending 1.wav", "the user's");
    GeneratedTakes::write(take(GenerationKind::ending), done);
    GeneratedTakes::write(take(GenerationKind::intro), done);
    GeneratedTakes::write(take(GenerationKind::variation), done);
    EXPECT_THAT(names(), ElementsAre("Rain - AI Ending 2 (full take).wav", "Rain - AI Ending 2.wav",
                                     "Rain - AI Intro 1 (full take).wav", "Rain - AI Intro 1.wav",
                                     "Rain - AI Variation 1 (full take).wav"));
    EXPECT_EQ(test::readBytes(folder / "Rain Edits/Rain - AI Ending 1.wav"), "the user's");
    const auto near = [](const test::Planes& a, const test::Planes& b) {
        EXPECT_EQ(a.size(), b.size());
        for (size_t c = 0; c < a.size(); ++c) {
            EXPECT_THAT(a[c], testing::Pointwise(testing::FloatNear(2e-7F), b[c]));
        }
    };
    const auto full = test::readAudio(done[0]);
    EXPECT_EQ(full.rate, 8000);
    near(full.planes, planes);
    near(test::readAudio(done[1]).planes, transitionTrim(planes, 8000, false, 15, 1));
    near(test::readAudio(done[3]).planes, transitionTrim(planes, 8000, true, 2.5, 0.125));
    EXPECT_THAT(test::readBytes(done[0]), HasSubstr("Brindlehum Loomcraft ending take for Rain"));
    EXPECT_THAT(test::readBytes(done[3]), HasSubstr("Brindlehum Loomcraft intro for Rain, trimmed"));
}

TEST_F(GeneratedTakesTest, LeaveNothingHalfWritten) {
    struct Case {
        std::function<void()> make;
        std::string text;
    };
    const auto wav = [&](size_t frames) {
        test::writeAudio(folder / "take", test::noisePlanes(1, frames), {.rate = 1000});
    };
    for (const auto& [make, text] : std::vector<Case>{
             {[&] { test::writeBytes(folder / "take", "<html>not found</html>"); }, "Take 1 can't be read: "},
             {[&] { wav(1801 * 1000); }, "Take 1 is longer than 30 minutes"}}) {
        make();
        EXPECT_THAT(test::refusalOf([&] { GeneratedTakes::write(take(GenerationKind::ending), done); }).text,
                    testing::StartsWith(text));
        EXPECT_FALSE(fs::exists(folder / "Rain Edits"));
    }
    wav(100000);
    std::stop_source stop;
    stop.request_stop();
    GeneratedTakes::write(take(GenerationKind::ending), done, stop.get_token());
    EXPECT_TRUE(done.empty());
    for (const auto& each : fs::directory_iterator(folder / "Rain Edits")) {
        EXPECT_EQ(each.path().filename(), ".brindlehum-edits.json");
    }
    // A take that lies in memory alone.
    MemoryFile memory;
    memory.append(test::readBytes(folder / "take"));
    auto inMemory = take(GenerationKind::variation);
    inMemory.audio = memory.path();
    GeneratedTakes::write(inMemory, done);
    EXPECT_EQ(test::readAudio(done.at(0)).planes[0].size(), 100000U);
}

}  // namespace
}  // namespace brindlehum
