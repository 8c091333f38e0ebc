// Build-a-Score in the editor's window: off until it is set up, asked before it sends, and its key never shown.
#include <gmock/gmock.h>

#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>

#include "support/music.h"
#include "ui/editor/editor_window.h"
#include "ui/editor/take_row.h"
#include "ui/settings/generation_settings.h"
#include "window_fixture.h"

namespace brindlehum {
namespace {

using testing::HasSubstr;
using testing::Not;

struct GenerationBoxTest : test::WindowTest {
    EditorModel& editor = model.editor();
    EditorWindow window{editor, model.settings(), session.fileManager()};
    std::vector<GenerationQuestion> asked;
    GenerationConsent consent;
    int setUps = 0;

    GenerationBoxTest() {
        window.askForConsent = [this](const GenerationQuestion& question) {
            asked.push_back(question);
            return consent;
        };
        window.openGenerationSettings = [this] { ++setUps; };
        window.show();
        test::writeAudio(folder / "Rain.wav", {test::clickPiece(40)}, {.rate = int(test::musicRate)});
        window.open(folder / "Rain.wav");
        EXPECT_TRUE(settle([this] { return editor.music().pins().has_value(); }));
    }
    ~GenerationBoxTest() override { editor.document().close(); }
    void setAddress(const char* address) {
        model.settings().change([&](AppSettings& s) { s.generationAddress = address; });
    }
    QPushButton& button(const char* text) { return *named<QPushButton>(window, text); }
    bool shows(const QString& text) {
        const auto labels = window.findChildren<QLabel*>();
        return std::ranges::any_of(labels, [&](auto* each) { return each->isVisible() && each->text() == text; });
    }
};

TEST_F(GenerationBoxTest, SendsNothingBeforeItIsSetUpAndAllowed) {
    for (const char* each : {"AI Intro", "AI Ending", "AI Variation"}) { EXPECT_FALSE(button(each).isEnabled()); }
    button("Set Up…").click();
    EXPECT_EQ(setUps, 1);
    setAddress("http://music.example");
    EXPECT_FALSE(button("AI Ending").isEnabled());
    setAddress("https://music.example/v1");
    EXPECT_FALSE(button("Set Up…").isVisible());
    EXPECT_TRUE(shows("Asks music.example"));
    EXPECT_THAT(button("AI Ending").toolTip().toStdString(),
                testing::MatchesRegex("Sends 40.0 s of the sound, the tempo \\(120.00 BPM\\), the key \\(.*\\) and the "
                                      "name “Rain” to music.example"));
    button("AI Ending").click();
    ASSERT_EQ(asked.size(), 1U);
    EXPECT_EQ(asked[0].text, "Send to music.example?");
    EXPECT_THAT(asked[0].details.toStdString(),
                testing::AllOf(HasSubstr("40.0 s of the sound, the tempo (120.00 BPM) and the key"),
                               HasSubstr("music.example"), HasSubstr("up to 170 s")));
    EXPECT_TRUE(session.web.requests.empty());
    EXPECT_FALSE(editor.generator().running());
    consent = false;
    button("AI Intro").click();
    ASSERT_EQ(session.web.requests.size(), 1U);
    EXPECT_EQ(session.web.requests[0].url, "https://music.example/v1/ai/generate");
    EXPECT_THAT(session.web.requests[0].body, HasSubstr(R"("name":"Untitled")"));
    EXPECT_FALSE(button("AI Ending").isEnabled());
    session.web.done({{}, 400, R"({"error":"<b>No</b> &amp; bye"})"});
    EXPECT_TRUE(shows("<b>No</b> &amp; bye"));
    const auto* status = named<QLabel>(window, "<b>No</b> &amp; bye");
    EXPECT_EQ(status->textFormat(), Qt::PlainText);
    EXPECT_EQ(status->property("role"), "warning");
    button("AI Intro").click();
    EXPECT_EQ(asked.size(), 2U) << "asked once a service";
    button("Cancel").click();
    EXPECT_TRUE(shows("Cancelled"));
    setAddress("https://other.example");
    button("AI Intro").click();
    EXPECT_EQ(asked.size(), 3U);
    editor.generator().cancel();
    editor.document().close();
    EXPECT_EQ(button("AI Intro").toolTip(), "Needs an open piece whose bars are known");
}

TEST_F(GenerationBoxTest, ShowsTheTakesAndPlaysThem) {
    setAddress("https://music.example");
    consent = true;
    button("AI Variation").click();
    const auto answer = [this](size_t request, const std::string& body) {
        ASSERT_TRUE(settle([&] { return session.web.requests.size() == request; }));
        if (session.web.requests.back().sink) { session.web.requests.back().sink(body); }
        session.web.done({{}, 200, body});
    };
    answer(1, "{}");
    answer(2, R"({"taskId":"1","used":3,"allowance":20})");
    EXPECT_TRUE(shows("3 of 20 generations used this month"));
    EXPECT_TRUE(shows("Generating… 0s"));
    loop.advance(8);
    answer(3, R"({"status":"done","tracks":[{"url":"https://takes.example/1"}]})");
    answer(4, test::readBytes(file("take", 2)));
    ASSERT_TRUE(settle([this] { return !editor.generator().running(); }));
    EXPECT_TRUE(shows("1 files written"));
    ASSERT_TRUE(window.findChild<TakeRow*>());
    EXPECT_TRUE(settle([this] { return !window.findChild<TakeRow*>()->visibleRegion().isEmpty(); }));
    auto* play = named<QAbstractButton>(window, "Play Rain - AI Variation 1 (full take)");
    ASSERT_TRUE(play);
    play->click();
    ASSERT_TRUE(settle([this] { return editor.transport().auditioned().has_value(); }));
    EXPECT_TRUE(settle([this] { return editor.transport().isPlaying(); }));
    EXPECT_TRUE(named<QAbstractButton>(window, "Stop Rain - AI Variation 1 (full take)"));
    button("Reveal").click();
    EXPECT_EQ(session.files.shown.at(0), editor.generator().results()[0]);
    editor.transport().stop();
}

TEST_F(GenerationBoxTest, TheSettingsTakeAKeyAndNeverShowIt) {
    GenerationSettings page(model.settings(), editor.generationKey());
    page.show();
    auto& key = *named<QLineEdit>(page, "Key");
    EXPECT_FALSE(key.isEnabled());
    page.address().setText(" https://music.example ");
    const auto type = [&key](const char* text) {
        key.setText(text);
        QTest::keyClick(&key, Qt::Key_Return);
        EXPECT_EQ(key.text() + (key.isUndoAvailable() ? "undo" : ""), "");
    };
    const auto shows = [&page](const QString& text) { return named<QLabel>(page, text) != nullptr; };
    EXPECT_TRUE(shows("No key: requests are sent without one."));
    type("s3cr3t\xc3\xa9");
    EXPECT_TRUE(shows("A key has letters, digits and signs of ASCII only"));
    type("s3cr3t");
    EXPECT_TRUE(shows("The key is stored in the keyring."));
    EXPECT_EQ(session.keyring.kept,
              (std::map<std::string, std::string>{{"Generation service https://music.example:443", "s3cr3t"}}));
    EXPECT_THAT(model.settings().value().encode(), Not(HasSubstr("s3cr3t")));
    session.keyring.locked = true;
    type("another");
    EXPECT_TRUE(shows("The key is kept for this run only, since no keyring has taken it: It is locked"));
    page.address().setText("https://elsewhere.example");
    EXPECT_TRUE(shows("No key: requests are sent without one.")) << "a key is for its own server";
    page.address().setText("ftp://music.example");
    EXPECT_TRUE(shows("Off: the address must begin with https://, or with http:// for this machine."));
}

}  // namespace
}  // namespace brindlehum
